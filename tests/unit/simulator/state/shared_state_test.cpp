// One state file in use by several processes, and what keeps a run from writing it.
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "base/file.h"
#include "base/text.h"
#include "host_file/host_keys.h"
#include "state/state_file.h"
#include "unit/simulator/lab_fixture.h"

namespace {

using std::chrono::milliseconds;

class SharedState : public LabTest {
 protected:
  SharedState() {
    UseState();
    UseHost("adapters:\n  - {family: dahlia, serial: D, ports: [{}, {}]}\n");
  }

  // Makes every change in a process of its own, all at once; each has read the state before the first changes
  // it. Returns how many were refused.
  template <typename Change>
  static int InProcesses(unsigned count, Change change) {
    int gate[2];
    EXPECT_EQ(pipe(gate), 0);
    std::vector<pid_t> processes;
    for (unsigned number = 0; number < count; ++number) {
      const pid_t process = fork();
      if (process == 0) {
        close(gate[1]);
        HBAParamsInfo record{};
        HBAParamsExtra extra{};
        const DeviceHandle* const handle = HandleAt(0, number % 2);
        const bool good = TORPI_GetHBAParamsInfo(handle, &record, &extra) == 0;
        char byte;
        [[maybe_unused]] const ssize_t open = read(gate[0], &byte, 1);  // until the gate opens
        change(number, record);
        _exit(good && TORPI_UpdateHBAParameters(handle, &record) == 0 ? 0 : 1);
      }
      processes.push_back(process);
    }
    usleep(200000);  // time to reach the gate; a late one still counts
    close(gate[0]);
    close(gate[1]);
    int refused = 0;
    for (const pid_t process : processes) {
      int status = -1;
      waitpid(process, &status, 0);
      refused += status == 0 ? 0 : 1;
    }
    return refused;
  }

  static HBAParamsInfo Parameters(unsigned port) {
    HBAParamsInfo record{};
    HBAParamsExtra extra{};
    EXPECT_EQ(TORPI_GetHBAParamsInfo(HandleAt(0, port), &record, &extra), 0u);
    return record;
  }
};

// Twenty numbers of the record, each the setting of one process.
constexpr std::uint32_t HBAParamsInfo::*kFields[] = {
    &HBAParamsInfo::interrupt_delay_timer, &HBAParamsInfo::frame_size,
    &HBAParamsInfo::hard_loop_id,          &HBAParamsInfo::loop_reset_delay,
    &HBAParamsInfo::execution_throttle,    &HBAParamsInfo::login_retry_count,
    &HBAParamsInfo::port_down_retry_count, &HBAParamsInfo::link_down_timeout,
    &HBAParamsInfo::max_luns_per_target,   &HBAParamsInfo::data_rate,
    &HBAParamsInfo::operation_mode,        &HBAParamsInfo::connection_options};

TEST_F(SharedState, FortyChangesAtOnceAllStay) {
  const auto change = [](unsigned number, HBAParamsInfo& record) {
    const unsigned setting = number / 2;
    if (setting < std::size(kFields)) {
      record.*kFields[setting] = 1000 + number;
    } else {
      (record.*kBootDrives[setting - std::size(kFields)]).lun = static_cast<std::uint16_t>(1000 + number);
    }
  };
  EXPECT_EQ(InProcesses(40, change), 0);
  unsigned kept = 0;
  for (unsigned port = 0; port < 2; ++port) {
    const HBAParamsInfo record = Parameters(port);
    for (unsigned setting = 0; setting < 20; ++setting) {
      const unsigned found = setting < std::size(kFields)
                                 ? record.*kFields[setting]
                                 : (record.*kBootDrives[setting - std::size(kFields)]).lun;
      kept += found == 1000 + 2 * setting + port ? 1 : 0;
    }
  }
  EXPECT_EQ(kept, 40u);
}

TEST_F(SharedState, ReaderNeverMeetsHalfAFile) {
  ASSERT_EQ(TORPI_UpdateAdapterBeaconStatus(HandleAt(0), 1), 0u);
  const pid_t writer = fork();
  if (writer == 0) {
    for (unsigned turn = 0; turn < 40; ++turn) TORPI_UpdateAdapterBeaconStatus(HandleAt(0), turn % 2);
    _exit(0);
  }
  std::size_t read = 0;
  int status = -1;
  while (waitpid(writer, &status, WNOHANG) == 0) {
    const std::string text = Read("state.yaml");
    ASSERT_TRUE(text.starts_with("# State") && text.ends_with("\n")) << text;
    ASSERT_NE(text.find("beacon: "), std::string::npos) << text;
    ++read;
  }
  EXPECT_EQ(status, 0);
  EXPECT_GT(read, 0u);
}

TEST_F(SharedState, OnlyTheChangedSettingIsWritten) {
  ASSERT_EQ(TORPI_UpdateAdapterBeaconStatus(HandleAt(0), 1), 0u);
  const std::string name = lab::OctetText(EntryAt(0)->port_name.octets);
  EXPECT_EQ(Read("state.yaml"),
            "# State of the simulated host, written by the library.\n"
            "reboot-required: false\n"
            "adapters:\n"
            "  ZX640/D:\n"
            "    ports:\n"
            "      " +
                name + ":\n        configuration:\n          beacon: 1\n");
}

TEST_F(SharedState, SettingOfAnotherRunStaysWhereThisOneHasReadAnOlderOne) {
  const DeviceHandle* const handle = HandleAt(0);
  const std::string name = lab::OctetText(EntryAt(0)->port_name.octets);
  Write("state.yaml", "reboot-required: true\nadapters:\n  ZX640/D:\n    ports:\n      " + name +
                          ":\n        configuration: {fec: {enabled: false}, beacon: 0}\n");
  ASSERT_EQ(TORPI_UpdateAdapterBeaconStatus(handle, 1), 0u);
  NextRun();
  std::uint32_t fec = 9, beacon = 9;
  std::uint8_t reboot = 9;
  EXPECT_EQ(TORPI_FCGetFECSupportInfo(HandleAt(0), &fec), 0u);
  EXPECT_EQ(TORPI_GetAdapterBeaconStatus(HandleAt(0), &beacon), 0u);
  EXPECT_EQ(TORPI_IsRebootRequired(&reboot), 0u);
  EXPECT_EQ(fec, 0u);
  EXPECT_EQ(beacon, 1u);
  EXPECT_EQ(reboot, 1);
}

TEST_F(SharedState, FailedChangeIsWrittenWithTheNextOne) {
  setenv("TORPI_LAB_STATE", Path("later/state.yaml").c_str(), 1);
  testing::internal::CaptureStderr();
  EXPECT_EQ(TORPI_UpdateAdapterBeaconStatus(HandleAt(0), 1), 904u);
  testing::internal::GetCapturedStderr();
  std::filesystem::create_directory(Path("later"));
  EXPECT_EQ(TORPI_FCSetFECSupportInfo(HandleAt(0), 0), 0u);
  NextRun();
  std::uint32_t beacon = 9;
  EXPECT_EQ(TORPI_GetAdapterBeaconStatus(HandleAt(0), &beacon), 0u);
  EXPECT_EQ(beacon, 1u);
}

TEST_F(SharedState, LinkStaysAndItsTargetIsReplaced) {
  std::filesystem::create_directory(Path("far"));
  std::filesystem::create_symlink("far/away.yaml", Path("near.yaml"));
  std::filesystem::create_symlink("near.yaml", Path("state.yaml"));
  ASSERT_EQ(TORPI_UpdateAdapterBeaconStatus(HandleAt(0), 1), 0u);
  EXPECT_TRUE(std::filesystem::is_symlink(Path("state.yaml")));
  EXPECT_TRUE(std::filesystem::is_symlink(Path("near.yaml")));
  EXPECT_TRUE(std::filesystem::is_regular_file(Path("far/away.yaml")));
  EXPECT_TRUE(std::filesystem::exists(Path("far/away.yaml.lock")));
  NextRun();
  std::uint32_t beacon = 9;
  EXPECT_EQ(TORPI_GetAdapterBeaconStatus(HandleAt(0), &beacon), 0u);
  EXPECT_EQ(beacon, 1u);
}

struct Foreign {
  const char* name;
  const char* text;
  const char* message;
};

constexpr Foreign kForeign[] = {
    {"NoYaml", "\x7f\x45LF \x01", ": "},
    {"OtherKeys", "hello: world\n", "hello: "},
    {"HostFile", "adapters:\n  - family: elm\n", "adapters: "},
    {"AdaptersThatAreAText", "adapters: 7\n", "adapters: expected a map, got '7'"},
    {"AdaptersThatAreNothing", "adapters:\n", "adapters: expected a map, got nothing"},
    {"AdapterThatIsNoMap", "adapters: {X/1: 7}\n", "X/1: "},
    {"PortsThatAreNoMap", "adapters: {ZX640/D: {ports: 7}}\n", "ports: "},
};

class ForeignFile : public SharedState, public testing::WithParamInterface<Foreign> {};

// The file was another one, or none, when the run began.
TEST_P(ForeignFile, IsLeftAsItIs) {
  const DeviceHandle* const handle = HandleAt(0);
  Write("state.yaml", GetParam().text);
  testing::internal::CaptureStderr();
  EXPECT_EQ(TORPI_UpdateAdapterBeaconStatus(handle, 1), 904u);
  const std::string message = testing::internal::GetCapturedStderr();
  EXPECT_TRUE(message.starts_with(Path("state.yaml") + ":")) << message;
  EXPECT_NE(message.find(GetParam().message), std::string::npos) << message;
  EXPECT_EQ(Read("state.yaml"), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(SharedState, ForeignFile, testing::ValuesIn(kForeign),
                         [](const auto& test) { return test.param.name; });

TEST_F(SharedState, FileThatIsTooLargeIsNeitherReadNorReplaced) {
  const std::string large = "# " + std::string(17u << 20, 'x') + "\n";
  Write("state.yaml", large);
  testing::internal::CaptureStderr();
  EXPECT_EQ(TORPI_GetAdapterList()->first, nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            Path("state.yaml") + ": can't be read: larger than 16 MiB\n");
}

TEST_F(SharedState, PipeIsNotWaitedFor) {
  ASSERT_EQ(mkfifo(Path("state.yaml").c_str(), 0600), 0);
  testing::internal::CaptureStderr();
  EXPECT_EQ(TORPI_GetAdapterList()->first, nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            Path("state.yaml") + ": can't be read: not a regular file\n");
}

TEST_F(SharedState, LockThatIsAFolderIsReported) {
  std::filesystem::create_directory(Path("state.yaml.lock"));
  const int held = open(Path("state.yaml.lock").c_str(), O_RDONLY | O_CLOEXEC);
  ASSERT_EQ(flock(held, LOCK_EX), 0);
  lab::Host host;
  ASSERT_EQ(lab::ReadHost("host", "adapters: [{family: elm}]", host), "");
  lab::LinkHost(host);
  lab::StateFile state(Path("state.yaml"), milliseconds(50));
  ASSERT_EQ(state.Load(host), "");
  EXPECT_TRUE(state.Save(host, host.adapters[0]).starts_with(Path("state.yaml") + ": can't be written: "));
  close(held);
  EXPECT_EQ(state.Save(host, host.adapters[0]), "");  // even a folder serves
}

TEST_F(SharedState, PatienceIsThatOfTheWholeRun) {
  lab::Host host;
  ASSERT_EQ(lab::ReadHost("host", "adapters: [{family: elm}]", host), "");
  lab::LinkHost(host);
  lab::StateFile state(Path("state.yaml"), milliseconds(300));
  ASSERT_EQ(state.Load(host), "");
  const int held = open(Path("state.yaml.lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  ASSERT_EQ(flock(held, LOCK_EX), 0);

  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(state.Save(host, host.adapters[0]), Path("state.yaml") +
                                                    ": can't be written: " + Path("state.yaml.lock") +
                                                    ": locked by another process, waited 0.3 s");
  EXPECT_EQ(state.Save(host, host.adapters[0]), Path("state.yaml") +
                                                    ": can't be written: " + Path("state.yaml.lock") +
                                                    ": locked by another process, waited 0.0 s");
  const auto waited = std::chrono::steady_clock::now() - begin;
  EXPECT_GE(waited, milliseconds(300));
  EXPECT_LT(waited, milliseconds(3000));
  close(held);
  EXPECT_EQ(state.Save(host, host.adapters[0]), "");
}

TEST_F(SharedState, LinkInPlaceOfTheLockIsNotFollowed) {
  std::filesystem::create_symlink(Path("victim"), Path("state.yaml.lock"));
  const DeviceHandle* const handle = HandleAt(0);
  testing::internal::CaptureStderr();
  EXPECT_EQ(TORPI_UpdateAdapterBeaconStatus(handle, 1), 904u);
  EXPECT_NE(testing::internal::GetCapturedStderr().find("state.yaml.lock: can't be made or opened: "),
            std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(Path("victim")));
}

TEST(FollowLinks, ALoopOfLinksIsThePathItself) {
  const ScratchFolder folder;
  const std::string loop = folder / "loop";
  std::filesystem::create_symlink(loop, loop);
  EXPECT_EQ(lab::FollowLinks(loop), loop);
  EXPECT_NE(lab::ReplaceFile(loop + "/x", "").find("can't be written"), std::string::npos);
}

}  // namespace
