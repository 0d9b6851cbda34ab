"""examples/fleet: the playbooks against lab hosts through local connections."""

import json
import re
import shutil
import subprocess

import pytest

from zfc.runner import BUILD, ROOT, SANITIZED, Zfc

FLEET = ROOT / "examples" / "fleet"
ANSIBLE = shutil.which("ansible-playbook")

pytestmark = [
    pytest.mark.skipif(ANSIBLE is None, reason="ansible-playbook is not installed; scripts/setup examples installs it"),
    pytest.mark.skipif(SANITIZED, reason="the playbooks start hundreds of programs, whose sanitizers have tests of their own"),
]

HOSTILE = """{{ 7*7 }}; $(touch pwned) \""""
NEW_IMAGE = "multiboot: 2.02.10"


class Lab:
    """A lab of some hosts, and runs of playbooks against them."""

    def __init__(self, folder, hosts):
        self._zfc = Zfc(folder)
        self.folder = self._zfc.work / "lab"
        self.names = [f"lab{number:02}" for number in range(1, hosts + 1)]
        self._run("/bin/sh", [FLEET / "lab/make", "lab", BUILD / "bin", hosts])

    def _run(self, program, words):
        variables = {
            "LC_ALL": "C.UTF-8",
            "HOME": str(self._zfc.work),
            "ANSIBLE_CONFIG": str(FLEET / "ansible.cfg"),
            "ANSIBLE_NOCOLOR": "1",
            "PYTHONDONTWRITEBYTECODE": "1",
        }
        argv, env = self._zfc.command([str(word) for word in words], library="simulated", program=program, env=variables)
        return subprocess.run(argv, capture_output=True, text=True, env=env, timeout=60)

    def play(self, playbook, *options, **variables):
        """Exit status, output, and the counts of each host in the recap."""
        words = [FLEET / f"{playbook}.yml", "-i", "lab/hosts.yml", *options]
        if variables:
            words += ["-e", json.dumps(variables)]
        done = self._run(ANSIBLE, words)
        recap = {
            name: dict((key, int(value)) for key, value in re.findall(r"(\w+)=(\d+)", counts))
            for name, counts in re.findall(r"^(\w+) +: (ok=.*)$", done.stdout, re.M)
        }
        return done.returncode, done.stdout + done.stderr, recap

    def zfc(self, host, words):
        """A command of the program on a lab host, in its text form."""
        options = ["run", f"lab/{host}.yaml", "--state", f"lab/{host}.state", "--"]
        return self._run(BUILD / "bin/zfc-lab", [*options, *words.split()]).stdout

    def states(self):
        """The hosts on which something was changed."""
        return sorted(path.stem for path in self.folder.glob("*.state"))

    def touched(self):
        """The hosts on which any command was run: each makes the folder of staged files."""
        return sorted(path.name.split(".")[0] for path in self.folder.glob("*.state.staged"))

    def report(self, name):
        return json.loads((self.folder / "reports" / f"{name}.json").read_text())


@pytest.fixture
def lab(tmp_path):
    return lambda hosts: Lab(tmp_path / "run", hosts)


def changed(recap):
    return sorted(name for name, counts in recap.items() if counts["changed"])


def elm(host):
    return f"FC_21:00:00:0e:1e:{host[3:]}:00:00"


class TestReport:
    def test_twenty_hosts(self, lab, tmp_path):
        lab = lab(20)
        status, output, recap = lab.play("report")
        assert status == 0, output
        assert sorted(recap) == [*lab.names, "localhost"] and changed(recap) == ["localhost"]
        files = sorted(path.name for path in (lab.folder / "reports").iterdir())
        assert files == [*(f"{name}.json" for name in lab.names), "summary.json"]
        assert lab.report("summary") == {
            "hosts": 20,
            "not_reported": [],
            "adapters": {"ZX100": 20, "ZX320": 20},
            "firmware": {
                "ZX100": {
                    "Multiboot Version": {"2.01.63": 20},
                    "Flash Firmware Version": {"9.12.01": 20},
                    "Family Firmware Version": {"9.12.01": 20},
                },
                "ZX320": {
                    "Multiboot Version": {"2.12.14": 20},
                    "Flash Firmware Version": {"9.15.05": 20},
                    "Family Firmware Version": {"9.15.05": 20},
                },
            },
            "running_firmware": {"9.12.01": 40, "9.15.05": 20},
            "ports": {"Offline": 1, "Online": 39, "Online (FEC)": 20},
            "modules": {"SORVEX OPTICS SX-F16-SW": 40, "SORVEX OPTICS SX-F32-SW": 20},
            "not_online": [{"host": "lab04", "port": "FC_21:00:00:0e:1e:04:00:01"}],
            "weak_modules": [  # the program shows four times the power of an SFP module with its own calibration
                {"host": "lab07", "port": elm("lab07"), "quantity": "Rx Power", "value": 0.08, "unit": "mW", "status": "Fault"}
            ],
        }
        hostile = lab.report("lab13")
        assert [adapter["id"] for adapter in hostile["adapters"]] == [f"Adapter_ZX100_{HOSTILE}", "Adapter_ZX320_HZ13"]
        assert hostile["adapters"][0]["information"]["Serial Number"] == HOSTILE
        assert [*tmp_path.rglob("pwned")] == [] and lab.states() == []

    def test_one_host(self, lab):
        lab = lab(1)
        assert lab.play("report")[0] == 0
        report = lab.report("lab01")
        assert report["host"] == "lab01" and report["problems"] == []
        port = report["ports"][0]
        assert port["id"] == elm("lab01") and port["information"]["Port Speed"] == "16 Gbps"
        assert port["module"]["Part Number"] == "SX-F16-SW"
        assert port["measurements"]["Temperature"] == {"value": 36.5, "unit": "C", "status": "Normal"}
        status, _, recap = lab.play("report")
        assert status == 0 and changed(recap) == []  # nothing is written anew

    def test_hosts_that_fail(self, lab):
        lab = lab(3)
        (lab.folder / "lab02.yaml").write_text("no-list: true\n")
        host = lab.folder / "lab03.yaml"
        host.write_text(host.read_text().replace("faults: []", "faults: [{call: TORPI_GetSFPDataEx, result: 150}]"))
        status, output, recap = lab.play("report")
        assert status != 0 and recap["lab02"]["failed"] == 1 and recap["lab03"]["failed"] == 0
        assert "-t adapter list: zfc-json: no document" in output
        summary = lab.report("summary")
        assert summary["hosts"] == 3 and summary["not_reported"] == ["lab02"] and summary["adapters"]["ZX100"] == 2
        problems = lab.report("lab03")["problems"]
        assert [problem["command"] for problem in problems] == [
            f"-t port -s dmi get {port['id']}" for port in lab.report("lab03")["ports"]
        ]
        assert {problem["message"] for problem in problems} == {
            "Failed, Command not supported when adapter port in maintenance mode"
        }


class TestProfile:
    def test_check_apply_and_apply_again(self, lab):
        lab = lab(2)
        status, output, recap = lab.play("profile", "--check", "--diff")
        assert status == 0 and changed(recap) == ["lab01", "lab02"] and lab.states() == []
        assert output.count("-Login Retry Count: 8\n+Login Retry Count: 16\n") == 6  # three ports a host
        assert output.count("-Enable Fc Tape Support: true\n+Enable Fc Tape Support: false\n") == 6
        assert "Login Retry Count: 8\n" in lab.zfc("lab01", f"-t port -s hbaparams getcli {elm('lab01')}")

        status, output, recap = lab.play("profile")
        assert status == 0 and changed(recap) == ["lab01", "lab02"] and lab.states() == ["lab01", "lab02"]
        assert output.count("The parameters are in use after a restart of this host.") == 2
        for host in lab.names:
            shown = lab.zfc(host, f"-t port -s hbaparams getcli {elm(host)}")
            assert "Login Retry Count: 16\n" in shown and "Enable Fc Tape Support: false\n" in shown
            assert [*(lab.folder / f"{host}.state.staged").iterdir()] == []

        status, _, recap = lab.play("profile", "--diff")
        assert status == 0 and changed(recap) == []

    def test_models_and_parameters_that_an_adapter_lacks(self, lab):
        lab = lab(1)
        profile = {"virtual_lane": True, "link-down-timeout": 45}
        status, output, _ = lab.play("profile", zfc_profile=profile, zfc_profile_models=["ZX100"])
        assert status == 0 and f"{elm('lab01')}: its adapter has no virtual-lane" in re.sub(r"\s+", " ", output)
        parameters = "-t port -s hbaparams getcli"
        assert "Link Down Timeout In Seconds: 45\n" in lab.zfc("lab01", f"{parameters} {elm('lab01')}")
        assert "Link Down Timeout In Seconds: 30\n" in lab.zfc("lab01", f"{parameters} FC_21:00:f4:c7:aa:01:00:00")

    def test_other_staged_changes_stay_out(self, lab):
        lab = lab(1)
        lab.zfc("lab01", f"-t port -s hbaparams setFilecli {elm('lab01')} -o 44")
        status, output, _ = lab.play("profile")
        assert status != 0 and "Other staged changes are there (Link Down Timeout In Seconds)" in output
        shown = lab.zfc("lab01", f"-t port -s hbaparams getcli {elm('lab01')}")
        assert "Link Down Timeout In Seconds: 30\n" in shown and "Login Retry Count: 8\n" in shown

    @pytest.mark.parametrize(
        "profile, message",
        [
            ({"login-retries": 16}, "parameters: no such parameter: login-retries"),
            ({"login-retry-count": 300}, "hbaparams setFile FC_21:00:00:0e:1e:01:00:00 --login-retry-count 300: Failed, Invalid"),
            ({}, "parameters: expected a map of HBA parameters"),
        ],
    )
    def test_refused(self, lab, profile, message):
        lab = lab(1)
        status, output, _ = lab.play("profile", zfc_profile=profile)
        assert status != 0 and message in output and lab.states() == []


class TestUpdate:
    def test_the_first_failure_ends_it(self, lab):
        lab = lab(20)
        status, output, recap = lab.play("update")
        assert status != 0 and "Failed, Corrupted File" in output
        assert sorted(recap) == lab.names[:10] and changed(recap) == lab.names[:9]
        assert recap["lab10"]["failed"] == 1
        assert lab.states() == lab.names[:9] and lab.touched() == lab.names[:10]
        for host in lab.names[:9]:
            assert NEW_IMAGE in (lab.folder / f"{host}.state").read_text()
        for host, version in (("lab09", "2.02.10"), ("lab10", "2.01.63"), ("lab11", "2.01.63")):
            shown = lab.zfc(host, f"-t adapter -s info getcli Adapter_ZX100_EL{host[3:]}")
            assert f"Multiboot Version: {version}\n" in shown

    def test_a_host_that_gives_no_answer_ends_it(self, lab):
        lab = lab(3)
        (lab.folder / "lab02.yaml").write_text("no-list: true\n")
        status, _, recap = lab.play("update")
        assert status != 0 and sorted(recap) == ["lab01", "lab02"] and lab.touched() == ["lab01", "lab02"]

    def test_a_host_that_cannot_be_reached_ends_it(self, lab):
        lab = lab(3)
        inventory = lab.folder / "hosts.yml"
        program = lab.folder / "ssh"
        program.write_text("#!/bin/sh\nexit 255  # as ssh ends without a connection\n")
        program.chmod(0o755)
        ssh = {"ansible_connection": "ssh", "ansible_ssh_executable": str(program)}
        inventory.write_text(inventory.read_text().replace("    lab02:", f"    lab02: {json.dumps(ssh)}"))
        status, output, recap = lab.play("update")
        assert status != 0 and "can't be reached" in output
        assert sorted(recap) == ["lab01", "lab02"] and lab.touched() == ["lab01"]

    def test_check_and_again(self, lab):
        lab = lab(1)
        status, output, recap = lab.play("update", "--check", "--diff")
        assert status == 0 and changed(recap) == ["lab01"] and lab.states() == []
        assert "-Multiboot Version: 2.01.63\n+Multiboot Version: 2.02.10\n" in output
        status, output, recap = lab.play("update")
        assert status == 0 and changed(recap) == ["lab01"]
        assert "The images run after a warm restart of this host." in output
        status, _, recap = lab.play("update")
        assert status == 0 and changed(recap) == []

    @pytest.mark.parametrize(
        "image, message",
        [
            ({"sha256": "00" * 32}, "elm-mbi.img: its SHA-256 is another than expected"),
            ({"file": "/none.img"}, "/none.img: can't be read on the host"),
            ({"kind": "BIOS"}, "images: ZX100: kind: expected one of MBI, BrdCfg, FWPreload, PEPCfg"),
            # The update succeeds, and brings another version than the one that was announced.
            ({"version": "2.02.11"}, "updated, but Multiboot Version is 2.02.10, not 2.02.11"),
        ],
    )
    def test_refused(self, lab, image, message):
        lab = lab(1)
        inventory = (lab.folder / "hosts.yml").read_text()
        line = re.search(r"ZX100: \{file: '(.*)', kind: MBI, version: 2.02.10, sha256: (\w+)\}", inventory)
        good = {"file": line[1], "kind": "MBI", "version": "2.02.10", "sha256": line[2]}
        status, output, _ = lab.play("update", zfc_images={"ZX100": {**good, **image}})
        assert status != 0 and message in output
        assert lab.states() == (["lab01"] if "version" in image else [])
