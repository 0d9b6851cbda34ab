// The NVMe boot entries of a port: how a staged file holds them and how they are shown.
#pragma once

#include <cstddef>

#include "config/staged/staged_file.h"
#include "framework/command_run.h"
#include "framework/device_library/config_records.h"
#include "framework/report_text.h"
#include "framework/status.h"

bool AnyEnabled(const NVMeBootRecord& record);

// Adds the keys of one entry, "NVME_0_Enable" and so on.
void AddNvmeEntry(std::size_t number, const NVMeBootEntry& entry, StagedValues& values);

// Adds the keys of all entries.
void AddNvmeEntries(const NVMeBootRecord& record, StagedValues& values);

// Puts the file's values over those of the record. kInvalidParameter for an enable flag above 1.
StatusCode ReadNvmeEntries(const CommandRun& run, const StagedFile& file, NVMeBootRecord& record);

// The lines of all entries.
void NvmeEntryLines(ReportText& text, const NVMeBootRecord& record);
