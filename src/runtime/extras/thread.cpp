#include "runtime/extras/thread.h"

#include <unistd.h>

#include <algorithm>

#include "runtime/debug_log.h"

namespace {

constexpr unsigned kFirstSleepSeconds = 1;
constexpr std::int32_t kEarlyEndMilliseconds = 2000;

}  // namespace

KestThread::KestThread(StartRoutine routine, void* parameter) {
  Start(routine, parameter);
}

KestThread::~KestThread() {
  Join();
}

bool KestThread::Detach() {
  if (!m_bJoinable) return false;
  m_bJoinable = false;
  return pthread_detach(m_hThread) == 0;
}

void KestThread::Dump(const char* prefix) const {
  DumpMember(prefix, "KestThread", "m_hThread", &m_hThread, sizeof m_hThread,
             static_cast<std::uint32_t>(m_hThread));
}

void KestThread::Start(StartRoutine routine, void* parameter) {
  m_bStarted = pthread_create(&m_hThread, nullptr, routine, parameter == nullptr ? this : parameter) == 0;
  m_bJoinable = m_bStarted;
}

void KestThread::Join() {
  if (m_bJoinable) pthread_join(m_hThread, nullptr);
  m_bJoinable = false;
}

KestLoopThread::KestLoopThread(Function function, void* parameter, std::uint32_t interval)
    : m_pFunction(function), m_pParam(parameter), m_uIntervalMillisec(interval) {
  Start(&KestLoopThread::Run, this);
}

KestLoopThread::~KestLoopThread() {
  m_ThreadDone.SetEvent();
  if (!IsStarted()) return;
  m_ThreadDoneResp.Lock(kNoTimeLimit);
  // Before the events are gone, which the thread may still be leaving.
  Join();
}

void KestLoopThread::Dump(const char* prefix) const {
  KestThread::Dump(prefix);
  const auto dump = [prefix](const char* member, const auto& field, std::uint32_t value) {
    DumpMember(prefix, "KestLoopThread", member, &field, sizeof field, value);
  };
  m_ThreadDone.Dump(prefix);
  m_ThreadDoneResp.Dump(prefix);
  dump("m_pFunction", m_pFunction, 0);
  dump("m_pParam", m_pParam, 0);
  dump("m_uIntervalMillisec", m_uIntervalMillisec, m_uIntervalMillisec);
}

void* KestLoopThread::Run(void* self) {
  static_cast<KestLoopThread*>(self)->Loop();
  return nullptr;
}

void KestLoopThread::Loop() {
  const auto interval = static_cast<std::int32_t>(std::min<std::uint32_t>(m_uIntervalMillisec, INT32_MAX));
  sleep(kFirstSleepSeconds);
  bool done = m_ThreadDone.Lock(kEarlyEndMilliseconds);
  while (!done) {
    m_pFunction(m_pParam);
    done = m_ThreadDone.Lock(interval);
  }
  m_ThreadDoneResp.SetEvent();
}
