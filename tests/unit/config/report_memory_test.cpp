// The reports when there is no memory for their text: the linker turns calloc into the function below.
#include <cstdlib>

#include "config/bbcr.h"
#include "config/boot_config.h"
#include "config/boot_config_ext.h"
#include "staged_fixture.h"
#include "support/unit_captured_stdout.h"

namespace {

std::size_t refused_size = 0;

}  // namespace

extern "C" {
void* __real_calloc(std::size_t count, std::size_t size);
void* __wrap_calloc(std::size_t count, std::size_t size);
void* __wrap_calloc(std::size_t count, std::size_t size) {
  return refused_size != 0 && count * size == refused_size ? nullptr : __real_calloc(count, size);
}
}

namespace {

// The node that a command's document is written through.
class Output : public Serializer {};

class ReportMemoryTest : public StagedFixture {
 protected:
  explicit ReportMemoryTest(const char* family = "BBCR") : StagedFixture(family) {}
  ~ReportMemoryTest() override { refused_size = 0; }

  // What the command prints in text form when the report's buffer of `size` bytes cannot be had.
  template <class Settings>
  static std::string Printed(StagedCommand command, std::size_t size,
                             const std::vector<std::string>& options = {}) {
    Output out;
    StatusCode status = kSuccess;
    std::string text = PrintedBy([&] {
      refused_size = size;
      Settings settings;
      status = settings.Run(command, out, With(options), OUTPUT_CLI);
      refused_size = 0;
    });
    EXPECT_EQ(status, kMemoryError);
    return text;
  }
};

constexpr const char* kRuler = "****************************************************\n";

std::string Failure(const char* structure, const char* field) {
  return std::string(kRuler) + structure + ":\nMessage: Failed, Memory Error\n" + field + ": " + kRuler;
}

TEST_F(ReportMemoryTest, CreditRecovery) {
  EXPECT_EQ(Printed<Bbcr>(StagedCommand::kGet, 1024), Failure("BBCRInfo", "BBCR"));
  EXPECT_EQ(Printed<Bbcr>(StagedCommand::kSetFile, 1024), Failure("BBCRInfo", "BBCR"));
}

TEST_F(ReportMemoryTest, ACommitHasHappenedAllTheSame) {
  Stage("BBCR_Count=9\n");
  EXPECT_EQ(Printed<Bbcr>(StagedCommand::kSet, 1024), Failure("BBCRInfo", "BBCR"));
  EXPECT_EQ(Config().bbcr_configured, 9);
  EXPECT_FALSE(std::filesystem::exists(path_));
}

TEST_F(ReportMemoryTest, BootConfiguration) {
  EXPECT_EQ(Printed<BootConfig>(StagedCommand::kGet, 2048), Failure("BootConfigInfo", "BootConfig"));
  EXPECT_EQ(Printed<BootConfigExt>(StagedCommand::kGet, 2048), Failure("BootConfigInfo", "BootConfig"));
  EXPECT_EQ(Printed<BootConfigExt>(StagedCommand::kGet, 8192, {"-b", "NVME"}),
            Failure("BootConfigInfo", "BootConfig"));
}

}  // namespace
