"""Turns reports of ports, modules and congestion into metrics, as a file for the textfile collector of node_exporter.

Reads every host through zfc-json, all at the same time, and replaces the file as a whole. A host or a command that fails
is a metric; the other metrics are there all the same. Needs Python 3.8 and nothing else.
"""

import argparse
import concurrent.futures
import json
import math
import os
import selectors
import shlex
import signal
import subprocess
import sys
import tempfile
import time
from pathlib import Path

ZFC_JSON = "/opt/ZunaFcEsxcliPlugin/bin/zfc-json --"
MOST_OUTPUT = 8 << 20  # bytes that one command may print
MOST_LABEL = 200  # characters of a label's value

# Outcomes that say that a port does not have something. They are no failures.
NOT_THERE = {
    "Failed, Data not available",
    "Failed, Feature not supported for this adapter",
    "Failed, Feature not supported for virtual port",
    "Failed, Feature not supported by driver",
    "Failed, Feature not supported by switch",
    "Failed, Feature disabled on the port",
    "Failed, Driver/Firmware does not support this feature",
}

# Name: type, help. In the order of the file.
METRICS = {
    "zfc_up": ("gauge", "Whether the list of ports was read, and all ports in time."),
    "zfc_failed_commands": ("gauge", "Commands that failed in this collection."),
    "zfc_collection_duration_seconds": ("gauge", "How long the collection of the host took."),
    "zfc_collection_timestamp_seconds": ("gauge", "When this file was made, in seconds of the Unix clock."),
    "zfc_port_info": ("gauge", "Model and versions of a port; always 1."),
    "zfc_port_up": ("gauge", "Whether the link of the port is up."),
    "zfc_port_speed_bytes_per_second": ("gauge", "Nominal speed of the link."),
    "zfc_port_temperature_celsius": ("gauge", "Temperature of the adapter's board."),
    "zfc_port_controller_errors_total": ("counter", "Errors of the adapter."),
    "zfc_port_device_errors_total": ("counter", "Errors that targets reported."),
    "zfc_port_commands_total": ("counter", "Commands sent."),
    "zfc_port_data_bytes_total": ("counter", "Data moved, counted by the driver in whole megabytes."),
    "zfc_port_loop_resets_total": ("counter", "Resets of the loop."),
    "zfc_port_interrupts_total": ("counter", "Interrupts of the adapter."),
    "zfc_port_link_failures_total": ("counter", "How often the link failed."),
    "zfc_port_sync_losses_total": ("counter", "How often the receiver lost its place in the bit stream."),
    "zfc_port_signal_losses_total": ("counter", "How often the light was gone."),
    "zfc_port_protocol_errors_total": ("counter", "Errors in the protocol of primitive sequences."),
    "zfc_port_invalid_words_total": ("counter", "Transmission words that no code has."),
    "zfc_port_invalid_crcs_total": ("counter", "Frames whose checksum was wrong."),
    "zfc_module_info": ("gauge", "Maker and type of the module of a port; always 1."),
    "zfc_module_temperature_celsius": ("gauge", "Temperature of the module."),
    "zfc_module_temperature_threshold_celsius": ("gauge", "Thresholds of the module's temperature."),
    "zfc_module_supply_volts": ("gauge", "Supply voltage of the module."),
    "zfc_module_supply_threshold_volts": ("gauge", "Thresholds of the module's supply voltage."),
    "zfc_module_bias_amperes": ("gauge", "Bias current of the module's laser."),
    "zfc_module_bias_threshold_amperes": ("gauge", "Thresholds of the bias current."),
    "zfc_module_transmit_power_watts": ("gauge", "Light that the module sends."),
    "zfc_module_transmit_power_threshold_watts": ("gauge", "Thresholds of the light sent."),
    "zfc_module_receive_power_watts": ("gauge", "Light that the module receives."),
    "zfc_module_receive_power_threshold_watts": ("gauge", "Thresholds of the light received."),
    "zfc_port_congested": ("gauge", "Whether congestion management says that the port is congested."),
    "zfc_port_congestion_severity": ("gauge", "Severity of the congestion: 0 none, 1 warning, 2 alarm."),
    "zfc_port_throttling": ("gauge", "Whether commands are held back."),
    "zfc_port_congestion_event_age_seconds": ("gauge", "Time since the last event of congestion management."),
    "zfc_port_congestion_events_total": ("counter", "Signals received and what was done about them."),
    "zfc_port_fabric_notifications_total": ("counter", "What the fabric reported to the port."),
}

DRIVER_COUNTERS = {
    "Controller Error Count": ("zfc_port_controller_errors_total", 1),
    "Device Error Count": ("zfc_port_device_errors_total", 1),
    "IO Count": ("zfc_port_commands_total", 1),
    "Mega Bytes Count": ("zfc_port_data_bytes_total", 1000000),
    "LIP Reset Count": ("zfc_port_loop_resets_total", 1),
    "Interrupt Count": ("zfc_port_interrupts_total", 1),
}
FIRMWARE_COUNTERS = {
    "Link Failure Count": ("zfc_port_link_failures_total", 1),
    "Loss Of Sync Count": ("zfc_port_sync_losses_total", 1),
    "Loss Of Signal Count": ("zfc_port_signal_losses_total", 1),
    "Primitive Sequence Protocol Error Count": ("zfc_port_protocol_errors_total", 1),
    "Invalid Transmission Word Count": ("zfc_port_invalid_words_total", 1),
    "Invalid CRC Count": ("zfc_port_invalid_crcs_total", 1),
}
# Column of a module's table: metric, its unit, the unit of the table, how many of these make one of the metric's.
QUANTITIES = {
    "Temperature": ("zfc_module_temperature", "celsius", "C", 1),
    "Voltage": ("zfc_module_supply", "volts", "V", 1),
    "Tx Bias": ("zfc_module_bias", "amperes", "mA", 1000),
    "Tx Power": ("zfc_module_transmit_power", "watts", "mW", 1000),
    "Rx Power": ("zfc_module_receive_power", "watts", "mW", 1000),
}
THRESHOLDS = {
    "High Alarm": "high_alarm",
    "High Warning": "high_warning",
    "Low Warning": "low_warning",
    "Low Alarm": "low_alarm",
}
STATES = {
    "Congestion Current State": ("zfc_port_congested", {"Healthy": 0, "Congested": 1}),
    "Congestion Severity": ("zfc_port_congestion_severity", {"None": 0, "Warning": 1, "Alarm": 2}),
    "I/O Throttling": ("zfc_port_throttling", {"Disabled": 0, "None": 0, "Active": 1}),
}
CONGESTION_EVENTS = (
    "Congestion Alarm",
    "Congestion Warning",
    "Cleared Congestion",
    "Throttled Up",
    "Throttled Down",
    "Bottomed Out",
    "Returned Busy",
)
FABRIC_NOTIFICATIONS = (
    "Link Failure",
    "Link Unknown Event",
    "Loss Of Sync",
    "Loss Of Signal",
    "Link Device Specific Event",
    "Primitive Sequence Protocol Error",
    "Invalid Transmission Word",
    "Invalid CRC",
    "Link Uncorrectable FEC",
    "Delivery Failure Unknown",
    "Delivery Timeout",
    "Delivery Unable To Route",
    "Delivery Failure Device Specific",
    "Congestion Clear",
    "Congestion Lost Credit",
    "Congestion Credit Stall",
    "Congestion Oversubscription",
    "Congestion Device Specific",
)
# The commands of a port, by the names that the metric of failed commands has for them.
COMMANDS = {
    "port list": "-t port list",
    "port info": "-t port -s info get",
    "port stats driver": "-t port -s stats get",
    "port stats firmware": "-t port -s stats get",
    "port dmi": "-t port -s dmi get",
    "port scmchk": "-t port -s scmchk get",
    "port scmstats": "-t port -s scmstats get",
}


class Failure(Exception):
    """A command without a document, or with one that says that it has failed."""


class Samples:
    """What goes into the file. A sample of the same metric and labels as an earlier one is left out: a file with
    two would be refused as a whole."""

    def __init__(self):
        self._values = {name: {} for name in METRICS}

    def add(self, metric, value, **labels):
        if isinstance(value, bool) or not isinstance(value, (int, float)) or not math.isfinite(value):
            return
        key = tuple((name, label_value(text)) for name, text in labels.items())
        self._values[metric].setdefault(key, value)

    def update(self, other):
        for name, values in other._values.items():
            for key, value in values.items():
                self._values[name].setdefault(key, value)

    def text(self):
        lines = []
        for name, values in self._values.items():
            if not values:
                continue
            kind, help_text = METRICS[name]
            lines += [f"# HELP {name} {help_text}", f"# TYPE {name} {kind}"]
            for key, value in values.items():
                labels = ",".join(f'{label}="{text}"' for label, text in key)
                lines.append(f"{name}{{{labels}}} {value!r}" if labels else f"{name} {value!r}")
        return "\n".join(lines) + "\n"


def label_value(text):
    """A text as a label's value: one line of bounded length, quotes and backslashes escaped."""
    text = str(text)[:MOST_LABEL].encode("utf-8", "replace").decode()
    text = "".join(letter if letter.isprintable() else "\N{REPLACEMENT CHARACTER}" for letter in text)
    return text.replace("\\", "\\\\").replace('"', '\\"')


def run(argv, deadline):
    """What a command prints on standard output. It and all that it has started end at the deadline."""
    try:
        process = subprocess.Popen(
            argv,
            stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE,
            start_new_session=True,
        )
    except (OSError, ValueError) as error:
        raise Failure(str(error)) from error
    output = bytearray()
    try:
        with selectors.DefaultSelector() as selector:
            selector.register(process.stdout, selectors.EVENT_READ)
            while True:
                if not selector.select(max(0.0, deadline - time.monotonic())):
                    raise Failure("out of time")
                piece = os.read(process.stdout.fileno(), 1 << 16)
                if not piece:
                    return bytes(output)
                output += piece
                if len(output) > MOST_OUTPUT:
                    raise Failure("too much output")
    finally:
        try:
            os.killpg(process.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
        process.stdout.close()
        process.wait()


def lines_of(document):
    """The lines of a report."""
    found = []
    for value in (document.get("fields") or {}).values():
        for structure in value if isinstance(value, list) else []:
            for report in structure["fields"].values():
                if isinstance(report, dict):
                    found += report.get("lines") or []
    return [line for line in found if "label" in line]


def values_of(lines, key="value"):
    """The lines without a group, by their label. The first of a label counts."""
    values = {}
    for line in lines:
        if line["group"] is None:
            values.setdefault(line["label"], line[key])
    return values


class Host:
    """One host: how its commands are run, and what they gave."""

    def __init__(self, name, argv, command_timeout, deadline):
        self.name = name
        self.samples = Samples()
        self._argv = argv
        self._command_timeout = command_timeout
        self._deadline = deadline
        self._failed = dict.fromkeys(COMMANDS, 0)

    def collect(self):
        """Never raises: whatever a host answers, the others have their metrics."""
        started = time.monotonic()
        try:
            complete = self._collect()
        except Exception as error:  # a document of another shape, for one
            print(f"{self.name}: {type(error).__name__}: {error}", file=sys.stderr)
            complete = False
        self.samples.add("zfc_up", int(complete), host=self.name)
        self.samples.add("zfc_collection_duration_seconds", round(time.monotonic() - started, 3), host=self.name)
        for command, count in self._failed.items():
            self.samples.add("zfc_failed_commands", count, host=self.name, command=command)

    def _collect(self):
        listed = self._document("port list")
        if listed is None:
            return False
        for item in listed["list"] or []:
            if time.monotonic() >= self._deadline:
                print(f"{self.name}: out of time", file=sys.stderr)
                return False
            self._port(item["fields"]["Ports"])
        return time.monotonic() < self._deadline

    def _document(self, command, *words):
        """The document of a command; none when it has failed."""
        try:
            deadline = min(self._deadline, time.monotonic() + self._command_timeout)
            output = run(self._argv([*COMMANDS[command].split(), *words]), deadline)
            document = json.loads(output.decode("utf-8", "replace"))
            if document["success"]:
                return document
            if document["message"] in NOT_THERE:
                return None
            raise Failure(document["message"])
        except (Failure, ValueError, KeyError, TypeError) as error:
            self._failed[command] += 1
            what = "no document" if isinstance(error, (ValueError, KeyError, TypeError)) else error
            print(f"{self.name}: {' '.join([command, *words])}: {what}", file=sys.stderr)
            return None

    def _lines(self, command, *words):
        document = self._document(command, *words)
        return lines_of(document) if document else []

    def _port(self, port):
        labels = {"host": self.name, "port": port}
        self._information(self._lines("port info", port), labels)
        self._counters(self._lines("port stats driver", port, "Driver"), DRIVER_COUNTERS, labels)
        self._counters(self._lines("port stats firmware", port, "Firmware"), FIRMWARE_COUNTERS, labels)
        self._module(self._lines("port dmi", port), labels)
        self._congestion(self._lines("port scmchk", port), labels)
        self._congestion_statistics(self._lines("port scmstats", port), labels)

    def _information(self, lines, labels):
        if not lines:
            return
        texts, numbers = values_of(lines), values_of(lines, "number")
        self.samples.add(
            "zfc_port_info",
            1,
            **labels,
            model=texts.get("Model", ""),
            driver=texts.get("Driver Version", ""),
            firmware=texts.get("Running Firmware Version", ""),
        )
        self.samples.add("zfc_port_up", int(texts.get("Port State", "").startswith("Online")), **labels)
        self.samples.add("zfc_port_temperature_celsius", numbers.get("Temperature In Celsius"), **labels)
        speed = numbers.get("Port Speed")
        if isinstance(speed, int):
            self.samples.add("zfc_port_speed_bytes_per_second", speed * 1000000000 // 8, **labels)

    def _counters(self, lines, counters, labels):
        numbers = values_of(lines, "number")
        for label, (metric, factor) in counters.items():
            if isinstance(numbers.get(label), int):
                self.samples.add(metric, numbers[label] * factor, **labels)

    def _module(self, lines, labels):
        lines = [line for line in lines if line["section"] == "Media Information"]
        if not lines:
            return
        texts = values_of(lines)
        self.samples.add(
            "zfc_module_info",
            1,
            **labels,
            vendor=texts.get("Vendor", ""),
            part=texts.get("Part Number", ""),
            serial=texts.get("Serial Number", ""),
            type=texts.get("Media Type", ""),
        )
        for line in lines:
            metric, unit, unit_of_line, divisor = QUANTITIES.get(line["group"], (None,) * 4)
            number = line["number"]
            if metric is None or line["unit"] != unit_of_line or number is None:
                continue
            value = number / divisor
            if line["label"] == "Value":
                self.samples.add(f"{metric}_{unit}", value, **labels)
            elif line["label"] in THRESHOLDS:
                self.samples.add(f"{metric}_threshold_{unit}", value, **labels, level=THRESHOLDS[line["label"]])

    def _congestion(self, lines, labels):
        texts = values_of(lines)
        for label, (metric, states) in STATES.items():
            self.samples.add(metric, states.get(texts.get(label)), **labels)
        age = values_of(lines, "number").get("Seconds Since Last Event")
        self.samples.add("zfc_port_congestion_event_age_seconds", age, **labels)

    def _congestion_statistics(self, lines, labels):
        sections = {
            "zfc_port_congestion_events_total": ("Congestion Mitigation", CONGESTION_EVENTS),
            "zfc_port_fabric_notifications_total": (
                "Rx Fabric Performance Impact Notifications",
                FABRIC_NOTIFICATIONS,
            ),
        }
        for metric, (section, kinds) in sections.items():
            numbers = values_of([line for line in lines if line["section"] == section], "number")
            for kind in kinds:
                word = kind.lower().replace(" ", "_")
                self.samples.add(metric, numbers.get(f"{kind} Count"), **labels, kind=word)


def local(program):
    """How a program of this machine is run with the words of a command."""
    words = shlex.split(program)
    return lambda more: [*words, *more]


def over_ssh(destination, program, connect_timeout):
    """The same over ssh. The words pass a shell there."""

    def argv(words):
        command = f"{program} {' '.join(shlex.quote(word) for word in words)}"
        options = ["-o", "BatchMode=yes", "-o", f"ConnectTimeout={connect_timeout}"]
        return ["ssh", *options, "--", destination, command]

    return argv


def collect(hosts):
    """The samples of all hosts."""
    with concurrent.futures.ThreadPoolExecutor(max_workers=min(32, len(hosts))) as pool:
        list(pool.map(Host.collect, hosts))
    samples = Samples()
    for host in hosts:
        samples.update(host.samples)
    samples.add("zfc_collection_timestamp_seconds", int(time.time()))
    return samples


def replace(path, text):
    """Readers of the file meet the old or the new one, and never find another that ends in .prom."""
    handle, name = tempfile.mkstemp(dir=path.parent, prefix=f".{path.name}.", suffix=".new")
    try:
        with os.fdopen(handle, "w", encoding="utf-8") as file:
            file.write(text)
            file.flush()
            os.fsync(file.fileno())
        os.chmod(name, 0o644)
        os.replace(name, path)
    except BaseException:
        os.unlink(name)
        raise


def pair(text):
    name, separator, rest = text.partition("=")
    if not name:
        raise argparse.ArgumentTypeError(f"expected a name, got {text!r}")
    return name, rest if separator else None


def seconds(text):
    value = float(text)
    if not 0 < value <= 3600:
        raise ValueError
    return value


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--output", type=Path, help="the file that is replaced, ending in .prom; else standard output")
    parser.add_argument(
        "--local", metavar="NAME[=PROGRAM]", type=pair, action="append", default=[], help="this machine, as host NAME"
    )
    parser.add_argument(
        "--ssh", metavar="NAME[=DESTINATION]", type=pair, action="append", default=[], help="a host that ssh reaches"
    )
    parser.add_argument("--program", default=ZFC_JSON, help="what runs zfc-json (%(default)s)")
    parser.add_argument("--timeout", type=seconds, default=50, help="seconds for all of it (%(default)s)")
    parser.add_argument("--command-timeout", type=seconds, default=10, help="seconds for a command (%(default)s)")
    options = parser.parse_args()

    deadline = time.monotonic() + options.timeout
    ways = [(name, local(program or options.program)) for name, program in options.local]
    for name, destination in options.ssh:
        if (destination or name).startswith("-"):
            parser.error(f"--ssh: expected a destination, got {destination or name!r}")
        ways.append((name, over_ssh(destination or name, options.program, math.ceil(options.command_timeout))))
    if not ways:
        parser.error("expected hosts: --local or --ssh")
    if len({name for name, _ in ways}) < len(ways):
        parser.error("expected names of their own for all hosts")
    text = collect([Host(name, argv, options.command_timeout, deadline) for name, argv in ways]).text()
    if options.output is None:
        sys.stdout.buffer.write(text.encode())
        return 0
    try:
        replace(options.output, text)
    except OSError as error:
        print(f"{options.output}: can't be written: {error.strerror}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
