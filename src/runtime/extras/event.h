#pragma once

#include <pthread.h>
#include <sys/types.h>

#include <cstddef>
#include <cstdint>

#include "runtime/locks.h"

// A signal that threads wait for. An auto-reset event lets one waiter through for each signal, a manual-reset
// event all until it is reset.
class CEvent : public CSyncObject {
 public:
  explicit CEvent(bool initially_signalled = false, bool manual_reset = false);
  ~CEvent() override;

  // Waits for the signal, as CSyncObject::Lock; an auto-reset event is then no longer signalled.
  bool Lock(std::int32_t timeout) override;

  // Gives the signal of an auto-reset event back; false to a thread that did not take the last signal. A
  // manual-reset event keeps its signal anyhow: always true.
  bool Unlock() override;

  // Signals one waiter, with a manual-reset event all; a signal that nobody waits for stays.
  void SetEvent();

  // Takes the signal of a manual-reset event back. Returns false for an auto-reset event, which is left as it
  // is.
  bool ResetEvent();

  // Signals those who wait now, one or all as SetEvent does, and leaves no signal for those who come later.
  void PulseEvent();

  void Dump(const char* prefix) const override;

 private:
  bool IsReleased(std::uint32_t generation) const { return m_bSignalled || m_uPulses != generation; }

  mutable pthread_mutex_t m_mutex;  // guards the fields below
  pthread_cond_t m_cond;
  pid_t m_ownerThread = 0;  // who took the last signal of an auto-reset event
  bool m_bSignalled;
  bool m_bManualReset;
  std::uint32_t m_uWaiters = 0;
  std::uint32_t m_uPulses = 0;  // pulses of a manual-reset event so far: they release all who came before
};

// What WaitForObjects returns when its time is used up.
inline constexpr std::uint32_t kWaitTimeout = 258;

// Waits at most `timeout` milliseconds (kNoTimeLimit: no limit) for any of the `count` objects, or with `all`
// for all of them, by trying each every millisecond. Returns the index of the one it had, with `all` that of
// the one it had last; kWaitTimeout, holding none, when the time is used up or `count` is 0.
std::uint32_t WaitForObjects(CSyncObject* const* objects, std::size_t count, bool all, std::int32_t timeout);
