#include "reference/hba_params_reference.h"

#include "reference/families.h"
#include "reference/text.h"

namespace reference {

namespace {

const char* ConnectionOption(std::uint32_t value) {
  constexpr const char* kOptions[] = {"Loop_Only", "Point_To_Point_Only",
                                      "Loop_Preferred_Otherwise_Point_To_Point"};
  return value < 3 ? kOptions[value] : "Unknown";
}

const char* DataRate(std::uint32_t value, const Families& families) {
  constexpr const char* kRates[] = {"1_Gbps", "2_Gbps",  "Auto",    "4_Gbps",
                                    "8_Gbps", "16_Gbps", "32_Gbps", "64_Gbps"};
  if (value == 5 && families.fern) return "10_Gbps";
  return value < 8 ? kRates[value] : "Unknown";
}

const char* OperationMode(std::uint32_t value) {
  switch (value) {
    case 0:
      return "Interrupt_For_Every_I/O_Completion";
    case 5:
      return "Interrupt_When_Interrupt_Delay_Timer_Expires";
    case 6:
      return "Interrupt_When_Interrupt_Delay_Timer_Expires_Or_No_Active_I/O";
    default:
      return "Unknown";
  }
}

}  // namespace

std::string HbaParamsDocument(bool xml, const void* port_bytes, const void* record_bytes) {
  constexpr Frame kFrame = {"HBAParametersInfo", "HBAParameters", "HBAParametersList"};
  const Record port(port_bytes);
  const Record record(record_bytes);
  const Families families(port);
  if (port.U16(462) == 3) return ErrorDocument(xml, kFrame, "Failed, Feature not supported for virtual port");
  const auto flag = [&](std::size_t at) { return TrueFalse(record.U32(at) != 0); };
  const auto unless = [](bool absent, const char* text) { return absent ? "NA" : text; };
  Writer writer(xml);
  writer.BeginStructure(kFrame.structure);
  writer.StringField("Message", "Success");
  writer.BeginField(kFrame.field);
  writer.BeginList();
  writer.BeginStructure(kFrame.list_structure);
  writer.StringField("Connection Options", ConnectionOption(record.U32(4)));
  writer.StringField("Data Rate", DataRate(record.U32(0), families));
  writer.StringField("Operation Mode", unless(families.ginkgo, OperationMode(record.U32(68))));
  writer.IntField("Frame Size", record.U32(24));
  writer.StringField("Enable Hard Loop Id", unless(families.cedar, flag(16)));
  writer.IntField("Hard Loop Id", families.cedar ? 0 : record.U32(20));
  writer.IntField("Loop Reset Delay In Seconds", record.U32(44));
  writer.IntField("Interrupt Delay Timer In 100us", families.ginkgo ? 0 : record.U32(72));
  writer.IntField("Execution Throttle", families.fern ? 0 : record.U32(56));
  writer.IntField("Login Retry Count", record.U32(48));
  writer.IntField("Port Down Retry Count", record.U32(52));
  writer.IntField("Link Down Timeout In Seconds", record.U32(76));
  writer.IntField("Luns Per Target", record.U32(12));
  writer.StringField("Enable LR", unless(families.aster || families.ginkgo, flag(208)));
  writer.StringField("Enable Host Hba Bios", TrueFalse(record.U32(100) == 0));
  writer.StringField("Enable Fc Tape Support", flag(8));
  writer.StringField("Enable Lip Full Login", unless(families.cedar, flag(32)));
  writer.StringField("Enable Target Reset", flag(36));
  writer.StringField("Enable Fabric Assigned WWN",
                     unless(families.aster || families.birch || families.cedar, flag(212)));
  writer.StringField("Enable VCLM", unless(!families.Managed(), TrueFalse(record.U32(236) == 0)));
  writer.StringField("Virtual Lane", unless(!families.dahlia, TrueFalse(record.U8(286) != 0)));
  writer.End("structure");
  writer.End("list");
  writer.End("field");
  writer.End("structure");
  return writer.Text();
}

}  // namespace reference
