#include "port/sfp/dmi_report.h"

#include "port/sfp/dmi_calculation.h"
#include "port/sfp/field_text.h"
#include "port/sfp/sfp_diagnostics.h"

void AppendDmiReport(ReportText& text, SfpImage image) {
  CalculateDetailsDMIData(image);
  DisplaySfpDiagnostics(text, image, true);
  DisplayFieldTable(text, image);
}
