#include "runtime/extras/event.h"

#include <unistd.h>

#include <algorithm>
#include <ctime>
#include <vector>

#include "runtime/debug_log.h"

namespace {

constexpr timespec kPollInterval{0, 1000000};

timespec MonotonicNow() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return now;
}

timespec After(timespec time, std::int32_t milliseconds) {
  time.tv_sec += milliseconds / 1000;
  time.tv_nsec += milliseconds % 1000 * 1000000L;
  if (time.tv_nsec >= 1000000000L) {
    ++time.tv_sec;
    time.tv_nsec -= 1000000000L;
  }
  return time;
}

bool IsReached(const timespec& end) {
  const timespec now = MonotonicNow();
  return now.tv_sec != end.tv_sec ? now.tv_sec > end.tv_sec : now.tv_nsec >= end.tv_nsec;
}

class MutexGuard {
 public:
  explicit MutexGuard(pthread_mutex_t& mutex) : mutex_(mutex) { pthread_mutex_lock(&mutex_); }
  ~MutexGuard() { pthread_mutex_unlock(&mutex_); }
  MutexGuard(const MutexGuard&) = delete;
  MutexGuard& operator=(const MutexGuard&) = delete;

 private:
  pthread_mutex_t& mutex_;
};

}  // namespace

CEvent::CEvent(bool initially_signalled, bool manual_reset)
    : m_bSignalled(initially_signalled), m_bManualReset(manual_reset) {
  pthread_mutex_init(&m_mutex, nullptr);
  pthread_condattr_t attributes;
  pthread_condattr_init(&attributes);
  pthread_condattr_setclock(&attributes, CLOCK_MONOTONIC);
  pthread_cond_init(&m_cond, &attributes);
  pthread_condattr_destroy(&attributes);
}

CEvent::~CEvent() {
  pthread_cond_destroy(&m_cond);
  pthread_mutex_destroy(&m_mutex);
}

bool CEvent::Lock(std::int32_t timeout) {
  MutexGuard guard(m_mutex);
  const std::uint32_t generation = m_uPulses;
  const timespec end = After(MonotonicNow(), std::max(timeout, 0));
  ++m_uWaiters;
  int result = 0;
  while (!IsReleased(generation) && result == 0) {
    result = timeout == kNoTimeLimit ? pthread_cond_wait(&m_cond, &m_mutex)
                                     : pthread_cond_timedwait(&m_cond, &m_mutex, &end);
  }
  --m_uWaiters;
  if (!IsReleased(generation)) return false;
  if (m_bManualReset) return true;
  m_ownerThread = gettid();
  m_bSignalled = false;
  return true;
}

bool CEvent::Unlock() {
  MutexGuard guard(m_mutex);
  if (m_bManualReset) return true;
  if (m_ownerThread != gettid()) return false;
  m_ownerThread = 0;
  m_bSignalled = true;
  pthread_cond_signal(&m_cond);
  return true;
}

void CEvent::SetEvent() {
  MutexGuard guard(m_mutex);
  m_bSignalled = true;
  if (m_bManualReset) {
    pthread_cond_broadcast(&m_cond);
  } else {
    pthread_cond_signal(&m_cond);
  }
}

bool CEvent::ResetEvent() {
  MutexGuard guard(m_mutex);
  if (!m_bManualReset) return false;
  m_bSignalled = false;
  return true;
}

void CEvent::PulseEvent() {
  MutexGuard guard(m_mutex);
  if (m_bManualReset) {
    m_bSignalled = false;
    ++m_uPulses;
    pthread_cond_broadcast(&m_cond);
    return;
  }
  // The waiter that takes the signal clears it.
  m_bSignalled = m_uWaiters > 0;
  pthread_cond_signal(&m_cond);
}

void CEvent::Dump(const char* prefix) const {
  std::uint32_t owner = 0;
  bool signalled = false;
  {
    MutexGuard guard(m_mutex);
    owner = static_cast<std::uint32_t>(m_ownerThread);
    signalled = m_bSignalled;
  }
  const auto dump = [prefix](const char* member, const auto& field, std::uint32_t value) {
    DumpMember(prefix, "CEvent", member, &field, sizeof field, value);
  };
  dump("m_mutex", m_mutex, 0);
  dump("m_cond", m_cond, 0);
  dump("m_ownerThread", m_ownerThread, owner);
  dump("m_bSignalled", m_bSignalled, signalled ? 1 : 0);
  dump("m_bManualReset", m_bManualReset, m_bManualReset ? 1 : 0);
}

std::uint32_t WaitForObjects(CSyncObject* const* objects, std::size_t count, bool all, std::int32_t timeout) {
  if (count == 0) return kWaitTimeout;
  const timespec end = After(MonotonicNow(), std::max(timeout, 0));
  std::vector<bool> had(count, false);
  std::size_t missing = all ? count : 1;
  while (true) {
    for (std::size_t i = 0; i < count; ++i) {
      if (had[i] || !objects[i]->Lock(0)) continue;
      had[i] = true;
      if (--missing == 0) return static_cast<std::uint32_t>(i);
    }
    if (timeout != kNoTimeLimit && IsReached(end)) break;
    nanosleep(&kPollInterval, nullptr);
  }
  for (std::size_t i = 0; i < count; ++i) {
    if (had[i]) objects[i]->Unlock();
  }
  return kWaitTimeout;
}
