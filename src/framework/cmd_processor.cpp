#include "framework/cmd_processor.h"

#include "framework/run_flags.h"

StatusCode CmdProcessor::Call(Callback callback, Words& words, StatusCode without_callback) {
  return callback == nullptr ? without_callback : callback(*parent_, words);
}

StatusCode CmdProcessor::Initialize(Words& words) {
  return Call(callbacks_.initialize, words, kSuccess);
}

StatusCode CmdProcessor::Uninitialize(Words& words) {
  return Call(callbacks_.uninitialize, words, kSuccess);
}

StatusCode CmdProcessor::IsExcluded(Words& words) {
  return Call(callbacks_.exclude, words, kSuccess);
}

bool CmdProcessor::IsHidden() {
  if (callbacks_.hidden == nullptr) return place_.hidden;
  Words no_words;
  return callbacks_.hidden(*parent_, no_words) == 0;
}

StatusCode CmdProcessor::Usage(Words& words, std::uint32_t index) {
  return callbacks_.usage == nullptr ? kSuccess : callbacks_.usage(*parent_, words, index);
}

StatusCode CmdProcessor::Execute(Words& words) {
  return Call(callbacks_.execute, words, kNoCallback);
}

StatusCode CmdProcessor::Help(Words& words) {
  return Call(callbacks_.help, words, kNoCallback);
}

bool CmdProcessor::IsUsable() const {
  return GetFlags() == 0 || ((GetFlags() & 1u) != 0 && RunFlagIsSet(RUN_FLAG_ENGINEERING));
}
