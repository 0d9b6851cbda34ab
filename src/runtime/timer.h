#pragma once

#include <sys/time.h>

#include <cstdint>
#include <string>

// A stopwatch on the wall clock. The texts are made when they are asked for, so that a timer costs two clock
// reads.
class KestTimer {
 public:
  // Stamps the start, with the present time or the one given, and forgets an earlier stop.
  void Start();
  void Start(const timeval& time);

  // Stamps the end, with the present time or the one given. Only the first stop after a start counts.
  void Stop();
  void Stop(const timeval& time);

  // Returns the milliseconds from the start to the stop, or to the present time when not stopped. 0 when
  // never started, and when the clock was set back meanwhile.
  std::int64_t ElapsedMilliseconds() const;

  // Return the stamps as local time, "" for one that was not set. Valid until the next call on this timer.
  const std::string& StartText();
  const std::string& StopText();

  // Returns the elapsed time as "hh:mm:ss.mmm", from one day on as "N days hh:mm:ss.mmm". Valid until the
  // next call.
  const std::string& ElapsedText();

  // Logs the members, each line headed by `prefix`.
  void Dump(const char* prefix) const;

 private:
  timeval mStartTime{};
  timeval mStopTime{};
  bool m_bStarted = false;
  bool m_bStopped = false;
  std::string mstrTimeStart;
  std::string mstrTimeStop;
  std::string mstrTimeElapsed;
};
