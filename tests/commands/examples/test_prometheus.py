"""examples/prometheus: metrics of lab hosts, read by promtool and compared; alert rules."""

import importlib.util
import json
import os
import re
import shlex
import shutil
import subprocess
import time

import pytest

from zfc.runner import BUILD, ROOT, SANITIZED

FOLDER = ROOT / "examples" / "prometheus"
COLLECTOR = FOLDER / "zfc_textfile.py"
ZFC_JSON = f"{shlex.quote(str(BUILD / 'bin/zfc-json'))} --"
PORT = "FC_21:00:f4:c7:aa:64:00:10"

pytestmark = pytest.mark.skipif(
    SANITIZED, reason="the collector starts hundreds of programs, whose sanitizers have tests of their own"
)
PROMTOOL = shutil.which("promtool")
needs_promtool = pytest.mark.skipif(PROMTOOL is None, reason="promtool is not installed; scripts/setup examples installs it")


@pytest.fixture
def collect(zfc):
    """Runs the collector; returns status, standard output and standard error."""

    def run(words, *, host=None, env=None):
        if host is not None:
            zfc.file("lab.yaml", host.encode())
        variables = {"TORPI_LAB_HOST": "lab.yaml" if host is not None else "", **(env or {})}
        argv, variables = zfc.command(
            [str(COLLECTOR), *words], library="simulated", program="/usr/bin/python3", env=variables
        )
        done = subprocess.run(argv, capture_output=True, env=variables, timeout=60)
        return done.returncode, done.stdout.decode(), done.stderr.decode()

    return run


def samples(text):
    """The value of each sample, as it is written, by the metric with its labels."""
    found = [line.rsplit(" ", 1) for line in text.splitlines() if not line.startswith("#")]
    assert len({name for name, _ in found}) == len(found)
    return dict(found)


def checked(text):
    """What promtool has against a file of metrics."""
    return subprocess.run([PROMTOOL, "check", "metrics"], input=text.encode(), capture_output=True, timeout=60)


HOST = f"""adapters:
  - family: dahlia
    model: ZX640
    serial: LAB1
    ports:
      - wwpn: {PORT[3:]}
        temperature: 61
        driver-counters: [1, 2, 184467, 9213, 3, 73312]
        firmware-counters: [4, 5, 6, 7, 8, 4294967295]
        sfp: {{measured: {{temperature: 21.5, voltage: 3.25, bias: 7, tx-power: 0.6, rx-power: 0.02}}}}
        congestion:
          state: congested
          severity: alarm
          throttling: active
          seconds-since-event: 42
          statistics: {{port: {{congestion-alarms: 11, throttled-down: 12, congestion-credit-stall: 13}}}}
"""

# The program shows four times the received power of a module with its own calibration.
VALUES = {
    "port_up": "1",
    "port_speed_bytes_per_second": "8000000000",
    "port_temperature_celsius": "61",
    "port_controller_errors_total": "1",
    "port_device_errors_total": "2",
    "port_commands_total": "184467",
    "port_data_bytes_total": "9213000000",
    "port_loop_resets_total": "3",
    "port_interrupts_total": "73312",
    "port_link_failures_total": "4",
    "port_sync_losses_total": "5",
    "port_signal_losses_total": "6",
    "port_protocol_errors_total": "7",
    "port_invalid_words_total": "8",
    "port_invalid_crcs_total": "4294967295",
    "module_temperature_celsius": "21.5",
    "module_supply_volts": "3.25",
    "module_bias_amperes": "0.007",
    "module_transmit_power_watts": "0.0006",
    "module_receive_power_watts": "8e-05",
    "port_congested": "1",
    "port_congestion_severity": "2",
    "port_throttling": "1",
    "port_congestion_event_age_seconds": "42",
}
WITH_MORE_LABELS = {
    ("module_receive_power_threshold_watts", 'level="low_warning"'): "0.0004",
    ("module_receive_power_threshold_watts", 'level="low_alarm"'): "0.0002",
    ("module_temperature_threshold_celsius", 'level="high_alarm"'): "75.0",
    ("module_supply_threshold_volts", 'level="high_warning"'): "3.5",
    ("module_bias_threshold_amperes", 'level="low_alarm"'): "0.002",
    ("module_transmit_power_threshold_watts", 'level="high_warning"'): "0.001",
    ("port_congestion_events_total", 'kind="congestion_alarm"'): "11",
    ("port_congestion_events_total", 'kind="throttled_down"'): "12",
    ("port_congestion_events_total", 'kind="returned_busy"'): "0",
    ("port_fabric_notifications_total", 'kind="congestion_credit_stall"'): "13",
}


class TestMetrics:
    def test_values(self, collect):
        status, text, errors = collect(["--local", f"a={ZFC_JSON}"], host=HOST)
        assert status == 0 and errors == ""
        found = samples(text)
        labels = f'host="a",port="{PORT}"'
        for metric, value in VALUES.items():
            assert found[f"zfc_{metric}{{{labels}}}"] == value, metric
        for (metric, label), value in WITH_MORE_LABELS.items():
            assert found[f"zfc_{metric}{{{labels},{label}}}"] == value, (metric, label)
        assert found[f'zfc_module_info{{{labels},vendor="WTD",part="SX-F64-SW",serial="SX001000",type="6400-M5-SN-I"}}'] == "1"
        assert found['zfc_up{host="a"}'] == "1"
        failed = [value for name, value in found.items() if name.startswith("zfc_failed_commands{")]
        assert failed == ["0"] * 7
        assert abs(int(found["zfc_collection_timestamp_seconds"]) - time.time()) < 60

    def test_every_metric_has_help_and_type_ahead_of_its_samples(self, collect):
        text = collect(["--local", f"a={ZFC_JSON}"], host=HOST)[1]
        seen = None
        names = []
        for line in text.splitlines():
            if line.startswith("# HELP "):
                seen = line.split()[2]
                names.append(seen)
            elif line.startswith("# TYPE "):
                assert line.split()[2] == seen
                assert line.split()[3] == ("counter" if seen.endswith("_total") else "gauge")
            else:
                assert re.split(r"[{ ]", line)[0] == seen
        assert len(names) == len({*names})

    def test_what_a_port_does_not_have(self, collect):
        host = "adapters: [{family: elm, serial: A, ports: [{link: down, sfp: none}]}]"
        status, text, errors = collect(["--local", f"a={ZFC_JSON}"], host=host)
        found = samples(text)
        assert status == 0 and errors == ""
        assert [value for name, value in found.items() if name.startswith("zfc_port_up{")] == ["0"]
        for absent in ("zfc_module_", "zfc_port_congest", "zfc_port_speed"):
            assert not [name for name in found if name.startswith(absent)], absent
        assert found['zfc_up{host="a"}'] == "1" and '"port dmi"} 0' in text

    @needs_promtool
    @pytest.mark.parametrize("example", ["all-families", "modules", "odd", "diagnostics"])
    def test_promtool_finds_nothing(self, collect, example):
        status, text, _ = collect(
            ["--local", f"a={ZFC_JSON}"], env={"TORPI_LAB_HOST": str(ROOT / f"examples/{example}.yaml")}
        )
        assert status == 0 and "zfc_port_up{" in text
        done = checked(text)
        assert (done.returncode, done.stdout, done.stderr) == (0, b"", b"")

    @needs_promtool
    def test_promtool_finds_what_is_wrong(self):
        """So that its silence means something."""
        assert checked('# TYPE a_celsius gauge\na_celsius{b="c"} 1\n').returncode != 0
        assert checked('a{b="c"d"} 1\n').returncode != 0


HOSTILE = """adapters:
  - family: elm
    model: "Z\\"} 1\\nzfc_up 7\\\\"
    serial: A
    ports:
      - sfp: {part: "<&\\"\\\\}\\u00ff\\e[31m"}
"""


class TestHostileTexts:
    def test_are_escaped(self, collect):
        status, text, _ = collect(["--local", f'a"b\\c={ZFC_JSON}'], host=HOSTILE)
        assert status == 0
        assert 'zfc_up{host="a\\"b\\\\c"} 1\n' in text and "\nzfc_up 7" not in text
        assert ',part="<&\\"\\\\}ÿ\ufffd[31m",' in text
        assert all(letter == "\n" or letter.isprintable() for letter in text)
        if PROMTOOL:
            assert checked(text).stderr == b""

    def test_documents_of_any_shape(self, collect, zfc):
        """A zfc-json that answers with something else: metrics are left out, never wrong, and the run goes on."""
        report = {"section": None, "group": None, "label": "Port State", "value": "Online", "unit": None, "number": None}
        answers = {
            "port list": {"list": [{"fields": {"Ports": "FC_1"}}, {"fields": {"Ports": "FC_1"}}, {"fields": {}}]},
            "info": {"fields": {"PortInfo": [{"fields": {"Data": {"lines": [report, {"text": "x", "group": 1}]}}}]}},
            "stats": {"fields": {"FCStats": "text"}},
            "dmi": {"fields": None},
        }
        for name, answer in answers.items():
            content = {"message": "Success", "success": True, "fields": None, "list": None, **answer}
            zfc.file(f"{name.split()[-1]}.json", json.dumps(content).encode())
        zfc.file("answer", b'case "$*" in *list*) cat list.json;; *info*) cat info.json;; *stats*) cat stats.json;;\n'
                           b'*dmi*) cat dmi.json;; *) echo "[1]";; esac\n')  # fmt: skip
        status, text, errors = collect(["--local", "a=sh answer", "--local", f"b={ZFC_JSON}"])
        found = samples(text)
        assert status == 0 and "a: KeyError: 'Ports'" in errors
        assert found['zfc_port_up{host="a",port="FC_1"}'] == "1"
        assert found['zfc_up{host="a"}'] == "0" and found['zfc_up{host="b"}'] == "1"
        assert found['zfc_failed_commands{host="a",command="port scmchk"}'] == "2"


class TestFailures:
    def test_a_command_that_fails(self, collect):
        host = HOST.replace("adapters:", "faults: [{call: TORPI_GetSFPDataEx, result: 150}]\nadapters:")
        status, text, errors = collect(["--local", f"a={ZFC_JSON}"], host=host)
        found = samples(text)
        assert status == 0 and f"a: port dmi {PORT}: Failed, Command not supported" in errors
        assert found['zfc_failed_commands{host="a",command="port dmi"}'] == "1"
        assert found['zfc_failed_commands{host="a",command="port info"}'] == "0"
        assert found['zfc_up{host="a"}'] == "1" and "zfc_port_up{" in text and "zfc_module_" not in text

    @pytest.mark.parametrize("program", ["false", "/none/zfc-json", "echo {", "echo [] --", "sh -c 'yes | head -c 9000000'"])
    def test_a_host_without_documents(self, collect, program):
        status, text, errors = collect(["--local", f"bad={program}", "--local", f"good={ZFC_JSON}"])
        found = samples(text)
        assert status == 0 and "bad: port list: " in errors
        assert found['zfc_up{host="bad"}'] == "0" and found['zfc_up{host="good"}'] == "1"
        assert found['zfc_failed_commands{host="bad",command="port list"}'] == "1"

    @pytest.mark.parametrize("limits", [["--timeout", "1"], ["--command-timeout", "0.5"]])
    def test_time_is_bounded(self, collect, zfc, limits):
        """The program's child would hold the pipe open for a minute."""
        zfc.file("hangs", b"sleep 60 & echo $! >>pids; sleep 60\n")
        started = time.monotonic()
        status, text, errors = collect(["--local", "slow=sh hangs", *limits])
        assert time.monotonic() - started < 10
        assert status == 0 and errors == "slow: port list: out of time\n"
        assert samples(text)['zfc_up{host="slow"}'] == "0"
        for pid in (zfc.work / "pids").read_text().split():
            command = f"/proc/{pid}/cmdline"
            assert not os.path.exists(command) or b"sleep" not in open(command, "rb").read()

    def test_time_of_many_ports_is_bounded(self, collect, zfc):
        """Each port is quick enough, all together are not: what was read is kept, and the host counts as not read."""
        ports = [{"fields": {"Ports": f"FC_{number}"}} for number in range(1000)]
        listed = {"success": True, "message": None, "fields": None, "list": ports}
        zfc.file("list.json", json.dumps(listed).encode())
        line = {"section": None, "group": None, "label": "Port State", "value": "Offline", "unit": None, "number": None}
        report = {"success": True, "fields": {"PortInfo": [{"fields": {"Data": {"lines": [line]}}}]}, "list": None}
        zfc.file("info.json", json.dumps({"message": "Success", **report}).encode())
        zfc.file("answer", b'case "$*" in *list*) cat list.json;; *) sleep 0.02; cat info.json;; esac\n')
        started = time.monotonic()
        status, text, _ = collect(["--local", "many=sh answer", "--timeout", "1"])
        assert time.monotonic() - started < 10 and status == 0
        found = samples(text)
        assert found['zfc_up{host="many"}'] == "0" and found['zfc_port_up{host="many",port="FC_0"}'] == "0"

    @pytest.mark.parametrize(
        "words, message",
        [
            ([], "expected hosts: --local or --ssh"),
            (["--local", "a", "--ssh", "a"], "expected names of their own for all hosts"),
            (["--ssh", "a=-oProxyCommand=x"], "--ssh: expected a destination, got '-oProxyCommand=x'"),
            (["--local", "=x"], "expected a name, got '=x'"),
            (["--local", "a", "--timeout", "0"], "invalid seconds value: '0'"),
        ],
    )
    def test_wrong_usage(self, collect, words, message):
        status, text, errors = collect(words)
        assert status == 2 and text == "" and message in errors


class TestFile:
    def test_is_replaced_as_a_whole(self, collect, zfc):
        path = zfc.file("zfc.prom", b"old\n")
        with open(path, "rb") as reader:
            status, text, _ = collect(["--local", f"a={ZFC_JSON}", "--output", "zfc.prom"])
            assert status == 0 and text == "" and reader.read() == b"old\n"
        assert 'zfc_up{host="a"} 1\n' in path.read_text() and path.stat().st_mode & 0o777 == 0o644
        assert [found.name for found in zfc.work.iterdir()] == ["zfc.prom"]

    def test_cannot_be_written(self, collect, zfc):
        (zfc.work / "zfc.prom").mkdir()
        (zfc.work / "zfc.prom" / "kept").touch()
        status, _, errors = collect(["--local", f"a={ZFC_JSON}", "--output", "zfc.prom"])
        assert status == 1 and errors.startswith("zfc.prom: can't be written: ")
        assert [found.name for found in zfc.work.iterdir()] == ["zfc.prom"]
        status, _, errors = collect(["--local", f"a={ZFC_JSON}", "--output", "none/zfc.prom"])
        assert (status, errors) == (1, "none/zfc.prom: can't be written: No such file or directory\n")


def test_over_ssh(collect, zfc):
    """What reaches the shell of the other side, here that of a script in place of ssh."""
    script = zfc.file("ssh", b'#!/bin/sh\nfor last; do :; done\nprintf "%s\\n" "$*" >>asked\nexec sh -c "$last"\n')
    script.chmod(0o755)
    host = "adapters: [{family: elm, serial: A, ports: [{}]}]"
    path = f"{zfc.work}:/usr/bin:/bin"
    words = ["--ssh", "esx01=root@esx01.example.org", "--program", ZFC_JSON]
    status, text, errors = collect(words, host=host, env={"PATH": path})
    assert status == 0 and errors == "" and samples(text)['zfc_up{host="esx01"}'] == "1"
    asked = (zfc.work / "asked").read_text().splitlines()
    assert asked[0] == f"-o BatchMode=yes -o ConnectTimeout=10 -- root@esx01.example.org {ZFC_JSON} -t port list"
    assert len(asked) == 7


def test_over_ssh_words_pass_the_shell_whole():
    spec = importlib.util.spec_from_file_location("zfc_textfile", COLLECTOR)
    module = importlib.util.module_from_spec(spec)
    spec.loader.exec_module(module)
    argv = module.over_ssh("host", "printf '%s\\n'", 5)(["FC_$(touch x)", "it's", ""])
    done = subprocess.run(["sh", "-c", argv[-1]], capture_output=True, text=True, timeout=10)
    assert done.stdout == "FC_$(touch x)\nit's\n\n"


class TestAlerts:
    @needs_promtool
    def test_rules(self):
        done = subprocess.run([PROMTOOL, "test", "rules", "alerts_test.yml"], cwd=FOLDER, capture_output=True, timeout=60)
        assert done.returncode == 0, done.stdout.decode() + done.stderr.decode()

    @needs_promtool
    def test_form(self):
        done = subprocess.run([PROMTOOL, "check", "rules", FOLDER / "alerts.yml"], capture_output=True, timeout=60)
        assert done.returncode == 0 and b"7 rules found" in done.stdout

    def test_metrics_are_those_of_the_collector(self):
        spec = importlib.util.spec_from_file_location("zfc_textfile", COLLECTOR)
        module = importlib.util.module_from_spec(spec)
        spec.loader.exec_module(module)
        used = {*re.findall(r"\bzfc_\w+", (FOLDER / "alerts.yml").read_text())}
        assert len(used) == 8 and used <= {*module.METRICS}

    def test_every_alert_has_a_test_that_fires_it(self):
        named = re.findall(r"alert: (\w+)", (FOLDER / "alerts.yml").read_text())
        fired = re.findall(r"alertname: (\w+)\n +exp_alerts:", (FOLDER / "alerts_test.yml").read_text())
        assert sorted(named) == sorted({*fired})
