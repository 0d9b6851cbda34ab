#pragma once

#include <pthread.h>

#include <cstdint>

#include "runtime/extras/event.h"

// A joinable thread, which its destructor joins.
class KestThread {
 public:
  using StartRoutine = void* (*)(void* parameter);

  // Starts `routine` with `parameter`, or with this object itself when that is null.
  explicit KestThread(StartRoutine routine, void* parameter = nullptr);
  virtual ~KestThread();
  KestThread(const KestThread&) = delete;
  KestThread& operator=(const KestThread&) = delete;

  // True when the system could start the thread.
  bool IsStarted() const { return m_bStarted; }

  // Lets the thread go on without this object. Returns false when there is none to detach.
  bool Detach();

  // Logs the members, each line headed by `prefix`.
  virtual void Dump(const char* prefix) const;

 protected:
  // For a class that starts its thread when its own members are ready.
  KestThread() = default;
  void Start(StartRoutine routine, void* parameter);
  void Join();

 private:
  pthread_t m_hThread{};
  bool m_bStarted = false;
  bool m_bJoinable = false;
};

// A thread that calls a function again and again until the object is destroyed.
class KestLoopThread : public KestThread {
 public:
  using Function = void (*)(void* parameter);

  // Starts the thread, which sleeps a second, waits two more for an early end, and then calls `function` with
  // `parameter` every `interval` milliseconds.
  KestLoopThread(Function function, void* parameter, std::uint32_t interval);

  // Ends the loop and waits for it, detached or not: up to a second within the first sleep, and as long as a
  // call of the function takes.
  ~KestLoopThread() override;

  void Dump(const char* prefix) const override;

 private:
  static void* Run(void* self);
  void Loop();

  CEvent m_ThreadDone{false, true};
  CEvent m_ThreadDoneResp{false, true};
  Function m_pFunction;
  void* m_pParam;
  std::uint32_t m_uIntervalMillisec;
};
