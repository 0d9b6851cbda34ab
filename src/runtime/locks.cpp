#include "runtime/locks.h"

#include <unistd.h>

#include <algorithm>
#include <ctime>

#include "runtime/debug_log.h"

namespace {

constexpr timespec kPollInterval{0, 1000000};

std::int64_t MonotonicMilliseconds() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return std::int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1000000;
}

}  // namespace

class CMutex::AccessGuard {
 public:
  explicit AccessGuard(const CMutex& mutex) : m_accessMutex(mutex.m_accessMutex) {
    pthread_mutex_lock(&m_accessMutex);
  }
  ~AccessGuard() { pthread_mutex_unlock(&m_accessMutex); }
  AccessGuard(const AccessGuard&) = delete;
  AccessGuard& operator=(const AccessGuard&) = delete;

 private:
  pthread_mutex_t& m_accessMutex;
};

CMutex::CMutex(MutexScope) {
  pthread_mutexattr_t attributes;
  pthread_mutexattr_init(&attributes);
  pthread_mutexattr_setpshared(&attributes, PTHREAD_PROCESS_SHARED);
  pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
  pthread_mutex_init(&m_accessMutex, &attributes);
  pthread_mutex_init(&m_mutex, &attributes);
  pthread_mutexattr_destroy(&attributes);
}

CMutex::~CMutex() {
  pthread_mutex_destroy(&m_mutex);
  pthread_mutex_destroy(&m_accessMutex);
}

bool CMutex::Lock(std::int32_t timeout) {
  if (ReenterAsOwner()) return true;
  if (timeout == kNoTimeLimit) {
    if (pthread_mutex_lock(&m_mutex) != 0) return false;
    BecomeOwner();
    return true;
  }
  const std::int64_t end = MonotonicMilliseconds() + std::max(timeout, 0);
  bool queued = false;
  while (!TryLockAtHead(queued)) {
    if (MonotonicMilliseconds() >= end) {
      if (queued) LeaveQueue();
      return false;
    }
    nanosleep(&kPollInterval, nullptr);
  }
  return true;
}

bool CMutex::Unlock() {
  AccessGuard guard(*this);
  if (m_uLockCount == 0 || m_ownerThread != gettid()) return false;
  if (--m_uLockCount == 0) {
    m_ownerThread = 0;
    pthread_mutex_unlock(&m_mutex);
  }
  return true;
}

void CMutex::Dump(const char* prefix) const {
  DumpAs("CMutex", prefix);
}

void CMutex::DumpAs(const char* class_name, const char* prefix) const {
  std::uint32_t lock_count = 0;
  std::uint32_t owner = 0;
  std::uint32_t queue_length = 0;
  {
    // Read first and logged later: this may be the logging lock itself.
    AccessGuard guard(*this);
    lock_count = m_uLockCount;
    owner = static_cast<std::uint32_t>(m_ownerThread);
    queue_length = static_cast<std::uint32_t>(m_uQueueLength);
  }
  const auto dump = [=](const char* member, const auto& field, std::uint32_t value) {
    DumpMember(prefix, class_name, member, &field, sizeof field, value);
  };
  dump("m_uLockCount", m_uLockCount, lock_count);
  dump("m_ownerThread", m_ownerThread, owner);
  dump("m_trylockQueue", m_trylockQueue, queue_length);
  dump("m_accessMutex", m_accessMutex, 0);
  dump("m_mutex", m_mutex, 0);
}

bool CMutex::ReenterAsOwner() {
  AccessGuard guard(*this);
  if (m_uLockCount == 0 || m_ownerThread != gettid()) return false;
  ++m_uLockCount;
  return true;
}

void CMutex::BecomeOwner() {
  AccessGuard guard(*this);
  m_ownerThread = gettid();
  m_uLockCount = 1;
}

// Takes a place in the queue if this thread has none, and the mutex if its place is the head.
bool CMutex::TryLockAtHead(bool& queued) {
  AccessGuard guard(*this);
  if (!queued && m_uQueueLength < m_trylockQueue.size()) {
    m_trylockQueue[m_uQueueLength++] = gettid();
    queued = true;
  }
  if (!queued || m_trylockQueue[0] != gettid() || pthread_mutex_trylock(&m_mutex) != 0) return false;
  RemoveFromQueue();
  m_ownerThread = gettid();
  m_uLockCount = 1;
  return true;
}

void CMutex::LeaveQueue() {
  AccessGuard guard(*this);
  RemoveFromQueue();
}

void CMutex::RemoveFromQueue() {
  pid_t* const first = m_trylockQueue.data();
  m_uQueueLength = static_cast<std::size_t>(std::remove(first, first + m_uQueueLength, gettid()) - first);
}

// The time limit is ignored, which is deliberate.
bool CCriticalSection::Lock(std::int32_t) {
  return CMutex::Lock(kNoTimeLimit);
}

void CCriticalSection::Dump(const char* prefix) const {
  DumpAs("CCriticalSection", prefix);
}

CSingleLock::CSingleLock(CSyncObject& object, bool lock_now) : m_object(object) {
  if (lock_now) Lock();
}

CSingleLock::~CSingleLock() {
  Unlock();
}

bool CSingleLock::Lock(std::int32_t timeout) {
  if (!m_bLocked) m_bLocked = m_object.Lock(timeout);
  return m_bLocked;
}

bool CSingleLock::Unlock() {
  if (!m_bLocked) return false;
  m_bLocked = false;
  return m_object.Unlock();
}

void CSingleLock::Dump(const char* prefix) const {
  DumpMember(prefix, "CSingleLock", "m_object", &m_object, sizeof m_object, 0);
  DumpMember(prefix, "CSingleLock", "m_bLocked", &m_bLocked, sizeof m_bLocked, m_bLocked ? 1 : 0);
}
