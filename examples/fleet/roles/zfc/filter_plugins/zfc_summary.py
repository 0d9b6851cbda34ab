"""One summary of the reports of many hosts."""

from collections import Counter

FIRMWARE_LINES = ("Multiboot Version", "Flash Firmware Version", "Family Firmware Version")


def _counted(values):
    return dict(sorted(Counter(value for value in values if value).items()))


def zfc_summary(reports, hosts):
    """reports: those that were made, by host; hosts: all hosts that were asked."""
    adapters = [adapter for report in reports.values() for adapter in report["adapters"]]
    models = sorted({adapter["information"].get("Model", "unknown") for adapter in adapters})
    ports = [(host, port) for host in sorted(reports) for port in reports[host]["ports"]]

    def versions(model):
        own = [a["information"] for a in adapters if a["information"].get("Model", "unknown") == model]
        return {line: _counted(information.get(line) for information in own) for line in FIRMWARE_LINES}

    def modules(port):
        module = port["module"]
        return " ".join(module[label] for label in ("Vendor", "Part Number") if module.get(label))

    return {
        "hosts": len(hosts),
        "not_reported": sorted(set(hosts) - set(reports)),
        "adapters": _counted(adapter["information"].get("Model", "unknown") for adapter in adapters),
        "firmware": {model: versions(model) for model in models},
        "running_firmware": _counted(port["information"].get("Running Firmware Version") for _, port in ports),
        "ports": _counted(port["information"].get("Port State", "unknown") for _, port in ports),
        "modules": _counted(modules(port) for _, port in ports),
        "not_online": [
            {"host": host, "port": port["id"]}
            for host, port in ports
            if not port["information"].get("Port State", "").startswith("Online")
        ],
        "weak_modules": [
            {"host": host, "port": port["id"], "quantity": quantity, **measured}
            for host, port in ports
            for quantity, measured in port["measurements"].items()
            if measured.get("status", "Normal") != "Normal"
        ],
    }


def zfc_files(reports, hosts):
    """The files to write: a report for each host, and the summary."""
    files = {f"{host}.json": {"host": host, **report} for host, report in reports.items()}
    return {**files, "summary.json": zfc_summary(reports, hosts)}


class FilterModule:
    def filters(self):
        return {"zfc_summary": zfc_summary, "zfc_files": zfc_files}
