#include "tools/snapshot/anonymise.h"

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <span>

#include "recording/fields.h"
#include "tools/snapshot/images.h"
#include "tools/snapshot/made_up.h"

namespace snapshot {
namespace {

using recording::Answer;
using recording::Field;
using recording::Form;
using recording::Identity;

using Bytes = std::span<std::uint8_t>;

template <class Record>
Bytes BytesOf(Record& record) {
  return {reinterpret_cast<std::uint8_t*>(&record), sizeof record};
}

void Zero(Bytes bytes) {
  std::fill(bytes.begin(), bytes.end(), std::uint8_t{0});
}

// One sweep through a host.
class Hider {
 public:
  void Host(recording::HostRecording& host);

 private:
  void HideField(const Field& field, Bytes bytes);

  // The fields of a record by their kind, and zeros in its gaps.
  template <class Record>
  void Hide(Record& record) {
    const Bytes bytes = BytesOf(record);
    std::size_t end = 0;  // of the field before
    for (const Field& field : recording::FieldsOf<Record>()) {
      Zero(bytes.subspan(end, field.offset - end));
      HideField(field, bytes.subspan(field.offset, field.size));
      end = std::size_t{field.offset} + field.size;
    }
    Zero(bytes.subspan(end));
  }
  template <std::integral Number>
  void Hide(Number&) {}
  void Hide(recording::SfpImage& image) { AnonymiseSfp(image, made_up_); }
  void Hide(recording::StatisticsBlock& statistics) { Hide(statistics.block); }
  void Hide(recording::StatisticsList& list) {
    for (SCMRStatisticsEntry& element : list.elements) Hide(element);
  }
  void Hide(recording::SizedBytes&) {}  // by its kind, see HideImage

  template <class Anonymise>
  void HideImage(Answer<recording::SizedBytes>& answer, Anonymise anonymise) {
    recording::Bytes& bytes = answer.record.bytes;
    anonymise(Bytes(bytes), made_up_);
    while (!bytes.empty() && bytes.back() == 0) bytes.pop_back();
  }

  template <class Recorded>
  void HideAnswers(Recorded& recorded) {
    VisitAnswers(recorded, [this](const char*, const char*, auto& answer) { this->Hide(answer.record); });
  }

  void Protocol(recording::ProtocolRecording& protocol);

  MadeUp made_up_;
};

void Hider::HideField(const Field& field, Bytes bytes) {
  if (field.form == Form::kText) {
    const auto end = std::find(bytes.begin(), bytes.end(), std::uint8_t{0});
    const auto length = static_cast<std::size_t>(end - bytes.begin());
    Zero(bytes.subspan(length));  // what an earlier, longer text may have left
    bytes = bytes.first(length);
  }
  switch (field.identity) {
    case Identity::kNone:
      break;
    case Identity::kName:
      MakeUpName(bytes, made_up_);
      break;
    case Identity::kSerial:
      made_up_.Text(bytes);
      break;
    case Identity::kNqn:
      made_up_.Nqn(bytes);
      break;
    case Identity::kHostId:
      made_up_.Octets(bytes);
      break;
    case Identity::kLunId:
      made_up_.Octets(bytes.subspan(1));  // past its format
      break;
  }
}

void Hider::Protocol(recording::ProtocolRecording& protocol) {
  Hide(protocol.record);
  HideAnswers(protocol);
  HideImage(protocol.vpd, AnonymiseVpd);
  HideImage(protocol.rdp, AnonymiseRdp);
  for (recording::TargetRecording& target : protocol.targets) {
    Hide(target.record);
    for (LunEntry& lun : target.luns) Hide(lun);
    HideAnswers(target);
  }
}

void Hider::Host(recording::HostRecording& host) {
  Hide(host.list);
  for (recording::AdapterRecording& adapter : host.adapters) {
    Hide(adapter.record);
    Hide(adapter.port_list);
    for (recording::PhyPortRecording& port : adapter.ports) {
      Hide(port.record);
      Hide(port.protocol_list);
      for (recording::ProtocolRecording& protocol : port.protocols) Protocol(protocol);
    }
  }
}

}  // namespace

void Anonymise(recording::HostRecording& host) {
  Hider().Host(host);
}

}  // namespace snapshot
