#include "yaml/state_node.h"

#include <yaml-cpp/emitter.h>
#include <yaml-cpp/emittermanip.h>

#include <algorithm>

namespace lab {
namespace {

void Write(const StateNode& node, YAML::Emitter& emitter) {
  switch (node.GetKind()) {
    case StateNode::Kind::kNothing:
      emitter << YAML::Null;
      return;
    case StateNode::Kind::kText:
      emitter << node.Text();
      return;
    case StateNode::Kind::kList:
      emitter << YAML::BeginSeq;
      for (const StateNode& item : node.Items()) Write(item, emitter);
      emitter << YAML::EndSeq;
      return;
    case StateNode::Kind::kMap:
      emitter << YAML::BeginMap;
      for (std::size_t i = 0; i < node.Items().size(); ++i) {
        emitter << YAML::Key << node.Keys()[i] << YAML::Value;
        Write(node.Items()[i], emitter);
      }
      emitter << YAML::EndMap;
      return;
  }
}

}  // namespace

const StateNode* StateNode::Find(std::string_view key) const {
  const auto place = std::find(keys_.begin(), keys_.end(), key);
  return place == keys_.end() ? nullptr : &items_[static_cast<std::size_t>(place - keys_.begin())];
}

StateNode& StateNode::operator[](std::string_view key) {
  Become(Kind::kMap);
  const auto place = std::find(keys_.begin(), keys_.end(), key);
  if (place != keys_.end()) return items_[static_cast<std::size_t>(place - keys_.begin())];
  keys_.emplace_back(key);
  return items_.emplace_back();
}

void StateNode::Add(StateNode item) {
  Become(Kind::kList);
  items_.push_back(std::move(item));
}

void StateNode::AddNew(std::string key, StateNode value) {
  Become(Kind::kMap);
  keys_.push_back(std::move(key));
  items_.push_back(std::move(value));
}

void StateNode::Become(Kind kind) {
  if (kind_ != kind) *this = StateNode(kind);
}

std::string YamlOf(const StateNode& node) {
  YAML::Emitter emitter;
  Write(node, emitter);
  return emitter.c_str();
}

}  // namespace lab
