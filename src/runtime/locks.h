#pragma once

#include <pthread.h>
#include <sys/types.h>

#include <array>
#include <cstddef>
#include <cstdint>

// Time limit of a Lock that waits as long as it takes.
inline constexpr std::int32_t kNoTimeLimit = -1;

// What can be waited for and held.
class CSyncObject {
 public:
  virtual ~CSyncObject() = default;
  CSyncObject(const CSyncObject&) = delete;
  CSyncObject& operator=(const CSyncObject&) = delete;

  // Waits at most `timeout` milliseconds (kNoTimeLimit: no limit; 0: one try). Returns whether the object was
  // had.
  virtual bool Lock(std::int32_t timeout) = 0;

  // Gives the object back. Returns false to a thread that does not hold it.
  virtual bool Unlock() = 0;

  // Logs the members, each line headed by `prefix`.
  virtual void Dump(const char* prefix) const = 0;

 protected:
  constexpr CSyncObject() = default;
};

// Selects the CMutex that processes can share.
enum class MutexScope { kProcessShared };

// A mutex that its owner may lock again; it is free after as many unlocks. Waiters with a time limit are
// served in the order they came.
class CMutex : public CSyncObject {
 public:
  constexpr CMutex() = default;

  // Makes both underlying mutexes process-shared and recursive, for an object in memory that processes share.
  explicit CMutex(MutexScope scope);
  ~CMutex() override;

  bool Lock(std::int32_t timeout) override;
  bool Unlock() override;
  void Dump(const char* prefix) const override;

 protected:
  void DumpAs(const char* class_name, const char* prefix) const;

 private:
  class AccessGuard;

  bool ReenterAsOwner();
  void BecomeOwner();
  bool TryLockAtHead(bool& queued);
  void LeaveQueue();
  void RemoveFromQueue();

  // Threads are known by their kernel ID, which differs between processes too. 0 is no thread.
  std::uint32_t m_uLockCount = 0;
  pid_t m_ownerThread = 0;
  // A fixed place, since a shared mutex can hold no pointers; a waiter that finds it full asks for a place
  // again.
  std::array<pid_t, 32> m_trylockQueue{};
  std::size_t m_uQueueLength = 0;
  mutable pthread_mutex_t m_accessMutex = PTHREAD_MUTEX_INITIALIZER;  // guards the fields above
  pthread_mutex_t m_mutex = PTHREAD_MUTEX_INITIALIZER;
};

// A mutex whose Lock always waits, whatever the time limit.
class CCriticalSection : public CMutex {
 public:
  constexpr CCriticalSection() = default;

  bool Lock(std::int32_t timeout) override;
  void Dump(const char* prefix) const override;
};

// Holds an object for the length of a scope.
class CSingleLock {
 public:
  // With `lock_now` waits for the object without a time limit. The object must outlive the scope.
  explicit CSingleLock(CSyncObject& object, bool lock_now = false);
  ~CSingleLock();
  CSingleLock(const CSingleLock&) = delete;
  CSingleLock& operator=(const CSingleLock&) = delete;

  // Waits for the object, as CSyncObject::Lock; true at once when this scope holds it already.
  bool Lock(std::int32_t timeout = kNoTimeLimit);

  // Gives the object back before the scope's end. Returns false when this scope does not hold it.
  bool Unlock();

  // True when this scope holds the object.
  bool IsLocked() const { return m_bLocked; }

  // Logs the members, each line headed by `prefix`.
  void Dump(const char* prefix) const;

 private:
  CSyncObject& m_object;
  bool m_bLocked = false;
};
