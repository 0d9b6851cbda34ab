#include "runtime/timer.h"

#include <cstdio>

#include "runtime/debug_log.h"
#include "runtime/local_time.h"
#include "runtime/text.h"

namespace {

timeval PresentTime() {
  timeval now{};
  gettimeofday(&now, nullptr);
  return now;
}

std::string LocalTimeText(const timeval& time) {
  char text[64];
  FormatLocalTime(time, text, sizeof text);
  return text;
}

}  // namespace

void KestTimer::Start() {
  Start(PresentTime());
}

void KestTimer::Start(const timeval& time) {
  mStartTime = time;
  m_bStarted = true;
  m_bStopped = false;
}

void KestTimer::Stop() {
  if (!m_bStopped) Stop(PresentTime());
}

void KestTimer::Stop(const timeval& time) {
  if (m_bStopped) return;
  mStopTime = time;
  m_bStopped = true;
}

std::int64_t KestTimer::ElapsedMilliseconds() const {
  if (!m_bStarted) return 0;
  const timeval end = m_bStopped ? mStopTime : PresentTime();
  timeval elapsed{};
  timersub(&end, &mStartTime, &elapsed);
  const std::int64_t milliseconds = std::int64_t{elapsed.tv_sec} * 1000 + elapsed.tv_usec / 1000;
  return milliseconds < 0 ? 0 : milliseconds;
}

const std::string& KestTimer::StartText() {
  if (m_bStarted) mstrTimeStart = LocalTimeText(mStartTime);
  return mstrTimeStart;
}

const std::string& KestTimer::StopText() {
  mstrTimeStop = m_bStopped ? LocalTimeText(mStopTime) : std::string();
  return mstrTimeStop;
}

const std::string& KestTimer::ElapsedText() {
  const std::int64_t total = ElapsedMilliseconds();
  const auto milliseconds = static_cast<int>(total % 1000);
  const auto seconds = static_cast<int>(total / 1000 % 60);
  const auto minutes = static_cast<int>(total / 60000 % 60);
  const auto hours = static_cast<int>(total / 3600000 % 24);
  const auto days = static_cast<int>(total / 86400000);
  if (days == 0) {
    FormatString(mstrTimeElapsed, "%02d:%02d:%02d.%03d", hours, minutes, seconds, milliseconds);
  } else {
    FormatString(mstrTimeElapsed, "%d days %02d:%02d:%02d.%03d", days, hours, minutes, seconds, milliseconds);
  }
  return mstrTimeElapsed;
}

void KestTimer::Dump(const char* prefix) const {
  const auto dump = [prefix](const char* member, const auto& field, std::int64_t value) {
    DumpMember(prefix, "KestTimer", member, &field, sizeof field, static_cast<std::uint32_t>(value));
  };
  dump("mStartTime", mStartTime, mStartTime.tv_sec);
  dump("mStopTime", mStopTime, mStopTime.tv_sec);
  dump("mstrTimeStart", mstrTimeStart, 0);
  dump("mstrTimeStop", mstrTimeStop, 0);
  dump("mstrTimeElapsed", mstrTimeElapsed, 0);
}
