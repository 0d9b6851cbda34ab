// Made-up values in place of those that give a host away.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <span>
#include <string>

namespace snapshot {

// Values of the same form and length: equal for equal originals, different for different ones. They come from
// a hash of the original without a secret, so that snapshots of one host agree, and so that whoever guesses
// an original can check the guess.
class MadeUp {
 public:
  using Bytes = std::span<std::uint8_t>;

  // Replaces letters by letters of the same case and digits by digits; bytes outside ASCII by others of them.
  // All other characters stay, so that blanks, points and dashes keep their places.
  void Text(Bytes text);

  // The same for an NVMe qualified name, whose standard beginning stays: "nqn.2014-08.org.nvmexpress:uuid:"
  // or the year and month of its naming authority.
  void Nqn(Bytes name);

  // Replaces the octets of an identifier, but for the zeros at its end.
  void Octets(Bytes octets);

 private:
  enum class Kind : char { kText = 't', kHex = 'h', kOctets = 'o' };

  void Replace(Kind kind, Bytes bytes);

  // Each with its kind ahead of its bytes.
  std::map<std::string, std::string> by_original_;
  std::set<std::string> used_;
};

}  // namespace snapshot
