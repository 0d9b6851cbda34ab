"""zfc-lab new: every host that it writes is good and is served."""

import subprocess

import pytest

from zfc.runner import BUILD

LAB = BUILD / "bin" / "zfc-lab"
FAMILIES = ["aster", "birch", "cedar", "ginkgo", "elm", "fern", "hazel", "iris", "dahlia"]


def lab(folder, *words):
    done = subprocess.run([LAB, *words], capture_output=True, cwd=folder, timeout=60)
    return done.returncode, done.stdout.decode(), done.stderr.decode()


def plural(count, thing):
    return f"{count} {thing}" + ("" if count == 1 else "s")


@pytest.mark.parametrize("family", FAMILIES)
@pytest.mark.parametrize("ports, targets, luns", [(0, 0, 0), (1, 0, 0), (1, 1, 0), (2, 1, 1), (3, 2, 5)])
def test_host_is_good_and_served(tmp_path, zfc, family, ports, targets, luns):
    counts = ["--ports", str(ports), "--targets", str(targets), "--luns", str(luns)]
    path = zfc.work / "new.yaml"
    assert lab(tmp_path, "new", "--family", family, *counts, "-o", path) == (0, "", "")
    holds = ", ".join(
        [
            "1 adapter",
            plural(ports, "port"),
            plural(ports * targets, "target"),
            plural(ports * targets * luns, "LUN"),
        ]
    )
    assert lab(tmp_path, "check", path) == (0, f"{path}: good: {holds}\n", "")
    env = {"TORPI_LAB_HOST": str(path), "TORPI_LAB_QUIET": "1"}
    served = {
        level: zfc(f"-t {level} listcli", library="simulated", env=env).stdout.count(mark)
        for level, mark in (("port", b"Ports: FC_"), ("lun", b"LUNs/Namespaces: FC_"))
    }
    assert served == {"port": ports, "lun": ports * targets * luns}


@pytest.mark.parametrize("words", [["--ports", "64"], ["--targets", "4096"], ["--luns", "16384"]])
def test_largest_counts_are_good(tmp_path, words):
    assert lab(tmp_path, "new", *words, "-o", "new.yaml") == (0, "", "")
    assert lab(tmp_path, "check", "new.yaml")[0] == 0


def test_without_options_it_goes_to_standard_output(tmp_path):
    status, shown, _ = lab(tmp_path, "new")
    assert status == 0
    assert shown.startswith("# A host for the simulated device library.")
    (tmp_path / "new.yaml").write_text(shown)
    assert lab(tmp_path, "check", "new.yaml")[1] == "new.yaml: good: 1 adapter, 2 ports, 2 targets, 8 LUNs\n"


def test_file_that_is_there_is_kept_without_force(tmp_path):
    (tmp_path / "new.yaml").write_text("mine\n")
    status, shown, wrong = lab(tmp_path, "new", "-o", "new.yaml")
    assert (status, shown, wrong) == (1, "", "zfc-lab new: new.yaml: is there already; --force replaces it\n")
    assert (tmp_path / "new.yaml").read_text() == "mine\n"
    assert lab(tmp_path, "new", "-o", "new.yaml", "--force") == (0, "", "")
    assert "family: elm" in (tmp_path / "new.yaml").read_text()


@pytest.mark.parametrize(
    "words, wrong",
    [
        (["--family", "oak"], "--family: unknown family 'oak'"),
        (["--ports", "65"], "--ports: expected a number from 0 to 64, got '65'"),
        (["--targets", "-1"], "--targets: expected a number from 0 to 4096, got '-1'"),
        (["--luns", "many"], "--luns: expected a number from 0 to 16384, got 'many'"),
        (
            ["--ports", "2", "--targets", "256", "--luns", "16384"],
            "a host has at most 65536 targets and 4194304 LUNs",
        ),
        (["file.yaml"], "unexpected word 'file.yaml'"),
    ],
)
def test_wrong_usage(tmp_path, words, wrong):
    assert lab(tmp_path, "new", *words) == (2, "", f"zfc-lab new: {wrong}\nTry 'zfc-lab new --help'.\n")


def test_help(tmp_path):
    status, shown, _ = lab(tmp_path, "new", "--help")
    assert status == 0 and shown.startswith("Usage: zfc-lab new ")
