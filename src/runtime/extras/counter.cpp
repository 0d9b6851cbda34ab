#include "runtime/extras/counter.h"

#include "runtime/debug_log.h"

constinit CMutex KestCounter::m_Access;

std::uint32_t KestCounter::Increment() {
  CSingleLock lock(m_Access, true);
  return ++m_uValue;
}

std::uint32_t KestCounter::Decrement() {
  CSingleLock lock(m_Access, true);
  return --m_uValue;
}

std::uint32_t KestCounter::Value() const {
  CSingleLock lock(m_Access, true);
  return m_uValue;
}

void KestCounter::Dump(const char* prefix) const {
  DumpMember(prefix, "KestCounter", "m_uValue", &m_uValue, sizeof m_uValue, Value());
}
