// What `zfc-lab diff` finds: changes, each with its place in the host.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace diff {

// Where a change is. What does not apply is empty.
struct Place {
  std::string adapter;  // "ZX100 AB12345"
  std::string port;     // its port name, or "port 3" for one that has none
  std::string target;   // its port name
  std::optional<unsigned> lun;

  std::string port_title;  // "Port 0, 21:00:00:0e:1e:11:22:33"

  friend bool operator==(const Place&, const Place&) = default;
};

using OptionalText = std::optional<std::string>;  // none: there was nothing, or there is nothing any more

struct Change {
  Place place;
  std::string what;  // "Link speed"
  OptionalText before, after;
  bool is_number = false;  // the values are decimal numbers
  std::string sentence;    // "Link speed changed from 16 Gbps to 8 Gbps."
};

class Report {
 public:
  // The place of all changes from here on.
  Place& At() { return place_; }

  // "<what> changed from <before> to <after>."
  void AddValue(std::string_view what, const std::string& before, const std::string& after);
  // "<what> rose by 3 to 5.", or that it was reset when it fell.
  void AddCounter(std::string_view what, std::uint64_t before, std::uint64_t after);
  // Anything else, in its own words.
  void Add(std::string_view what, OptionalText before, OptionalText after, std::string sentence);
  // "Other bytes of <record> differ."
  void AddOtherBytes(std::string_view record);

  const std::vector<Change>& Changes() const { return changes_; }

  // Takes the changes in that `skips` does not hold word by word; the rest with `prefix` ahead of the words.
  void TakeOthers(const Report& from, const Report& skips, std::string_view prefix);
  void Take(const Report& from);

  // As lines for a person: one heading for each place, then a sentence for each change. "" without changes.
  std::string Text() const;

  // As a JSON array of objects, one to a line.
  std::string Json() const;

 private:
  Place place_;
  std::vector<Change> changes_;
};

}  // namespace diff
