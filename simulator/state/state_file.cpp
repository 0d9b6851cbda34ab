#include "state/state_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/text.h"
#include "host_file/host_keys.h"
#include "state/port_state.h"

namespace lab {
namespace {

void ReadAdapterStates(const Value& map, Host& host) {
  map.EachKey([&](const Value& state) {
    for (Adapter& adapter : host.adapters) {
      if (adapter.state_key != state.Key()) continue;
      ReadAdapterState(state, adapter);
      adapter.changed = true;
      RefreshPortVersions(adapter);
    }
  });
}

constexpr KeyRow<Host> kStateFileKeys[] = {
    {"reboot-required", [](const Value& value, Host& into) { value.Into(into.reboot_required); }},
    {"adapters", ReadAdapterStates},
};

// An emptied field reads back as "", and an emptied version as "none".
std::string Shown(ComponentVersion version) {
  return version.AllZero() ? "none" : VersionText(version);
}

std::string Characters(const char* field, std::size_t size) {
  return std::string(field, strnlen(field, size));
}

YAML::Node MemoNode(const FlashMemoBlock& memo) {
  YAML::Node node;
  node["signature"] = Characters(memo.signature, sizeof memo.signature);
  node["family-firmware"] = Shown(memo.family_firmware);
  node["mbi-version"] = Shown(memo.mbi_version);
  const std::string date = Characters(memo.mbi_build_date, sizeof memo.mbi_build_date);
  if (date.size() == 8)
    node["build-date"] = date.substr(0, 4) + '-' + date.substr(4, 2) + '-' + date.substr(6);
  node["tool-id"] = Characters(memo.tool_id, sizeof memo.tool_id);
  char version[16];
  std::snprintf(version, sizeof version, "%u.%u.%u.%u", memo.tool_version[0], memo.tool_version[1],
                memo.tool_version[2], memo.tool_version[3]);
  node["tool-version"] = std::string(version);
  if (memo.update_month > 0) node["updated"] = TimeText(memo);
  return node;
}

YAML::Node AdapterNode(const Adapter& adapter) {
  YAML::Node node;
  node["personality"] = unsigned{adapter.personality};
  YAML::Node versions = node["versions"];
  versions["multiboot"] = std::string(adapter.record.multiboot_version.View());
  versions["firmware"] = std::string(adapter.record.flash_firmware_version.View());
  versions["bios"] = std::string(adapter.record.flash_bios_version.View());
  versions["efi"] = std::string(adapter.record.flash_efi_version.View());
  versions["fcode"] = std::string(adapter.record.flash_fcode_version.View());
  YAML::Node flash = node["flash"];
  for (const FlashComponent& component : kFlashComponents) {
    flash[component.name] = Shown(adapter.flash.*component.field);
  }
  if (adapter.family->memo_block) node["memo-block"] = MemoNode(adapter.memo);
  node["ports"] = PortStates(adapter);
  return node;
}

// The document as it stands in the file now, so that what other runs wrote about other adapters is kept.
YAML::Node CurrentDocument(const std::string& path) {
  std::string text;
  if (ReadFile(path.c_str(), text) != FileResult::kRead) return {};
  try {
    YAML::Node document = YAML::Load(text);
    return document.IsMap() ? document : YAML::Node();
  } catch (const YAML::Exception&) {
    return {};
  }
}

bool WriteAll(int descriptor, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = write(descriptor, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

std::string Failed(const std::string& path) {
  return path + ": can't be written: " + std::strerror(errno);
}

// A new file beside the old one, renamed over it: a reader sees the one or the other, never a half.
std::string ReplaceFile(const std::string& path, const std::string& text) {
  std::string temporary = path + ".XXXXXX";
  const int descriptor = mkostemp(temporary.data(), O_CLOEXEC);
  if (descriptor < 0) return Failed(path);
  struct stat old {};
  const mode_t mode = stat(path.c_str(), &old) == 0 ? old.st_mode & 07777 : 0644;
  bool good = WriteAll(descriptor, text) && fchmod(descriptor, mode) == 0 && fsync(descriptor) == 0;
  std::string wrong = good ? "" : Failed(path);
  close(descriptor);
  if (good && rename(temporary.c_str(), path.c_str()) != 0) {
    wrong = Failed(path);
    good = false;
  }
  if (!good) unlink(temporary.c_str());
  return wrong;
}

}  // namespace

std::string LoadState(const std::string& path, Host& host) {
  std::string text;
  if (ReadFile(path.c_str(), text) != FileResult::kRead) {
    return errno == ENOENT ? "" : path + ": can't be read: " + std::strerror(errno);
  }
  if (text.empty()) return {};  // as a fresh temporary file is
  return ReadDocument(path, text,
                      [&host](const Value& document) { ReadMap(document, kStateFileKeys, host); });
}

std::string SaveState(const std::string& path, const Host& host) {
  YAML::Node document = CurrentDocument(path);
  document["reboot-required"] = host.reboot_required;
  YAML::Node adapters = document["adapters"];
  for (const Adapter& adapter : host.adapters) {
    if (adapter.changed) adapters[adapter.state_key] = AdapterNode(adapter);
  }
  return ReplaceFile(
      path, "# State of the simulated host, written by the library.\n" + YAML::Dump(document) + '\n');
}

}  // namespace lab
