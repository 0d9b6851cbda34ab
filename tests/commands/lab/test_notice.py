"""The simulated library's notice on standard error: once in a process, at the first list, and nowhere else."""


import pytest

NOTICE = b"zfcesxcli: simulated host (%s)\n"
LOUD = {"TORPI_LAB_QUIET": ""}


def errors(zfc, words, stdin=b"", **env):
    """Standard error of a run that would say that the host is simulated."""
    return both(zfc, words, stdin, **env)[1]


def both(zfc, words, stdin=b"", **env):
    library = env.pop("library", "simulated")
    argv, variables = zfc.command(words, library=library, env={**LOUD, **env})
    done = zfc.run(argv, variables, stdin)
    assert done.returncode == 0
    return done.stdout, done.stderr


@pytest.mark.parametrize(
    "words",
    [
        "-t adapter list",
        "-t adapter listcli",
        "-t port -s info getcli FC_21:00:00:0e:1e:11:22:33",
        "-t lun list",
        "-t adapter -s info getcli Adapter_None_Such",
    ],
)
def test_reading_the_built_in_host(zfc, words):
    assert errors(zfc, words) == NOTICE % b"built-in"


@pytest.mark.parametrize("words", ["help", "-t adapter help", "-t adapter list ?", "no such words"])
def test_without_a_list_there_is_none(zfc, words):
    assert errors(zfc, words) == b""


def test_standard_output_is_the_same_with_it_and_without(zfc):
    loud, notice = both(zfc, "-t port list")
    quiet = zfc("-t port list", library="simulated").stdout
    assert loud == quiet and notice == NOTICE % b"built-in"


@pytest.mark.parametrize("value, silent", [("1", True), ("true", True), ("0", False), ("no", False)])
def test_silence(zfc, value, silent):
    expected = b"" if silent else NOTICE % b"built-in"
    assert errors(zfc, "-t adapter list", TORPI_LAB_QUIET=value) == expected


def test_once_in_a_shell(zfc):
    assert errors(zfc, "", b"-t adapter listcli\n-t port listcli\n-t adapter listcli\nq\n") == NOTICE % b"built-in"


@pytest.mark.parametrize(
    "name, shown",
    [
        ("lab.yaml", b"lab.yaml"),
        ("./lab.yaml", b"./lab.yaml"),
        ("two words.yaml", b"two words.yaml"),
        ("a\x1b[31mb\n\rc\x7f.yaml", rb"a\x1b[31mb\n\rc\x7f.yaml"),
        ("%s%n.yaml", b"%s%n.yaml"),
        ("h\u00f6st\u009b1m.yaml", rb"h\xc3\xb6st\xc2\x9b1m.yaml"),
    ],
)
def test_name_of_the_file(zfc, name, shown):
    zfc.file(name, b"adapters: [{family: elm, ports: [{}]}]\n")
    assert errors(zfc, "-t adapter list", TORPI_LAB_HOST=name) == NOTICE % shown


def test_host_without_a_list_has_none(zfc):
    zfc.file("lab.yaml", b"no-list: true\n")
    assert errors(zfc, "-t adapter list", TORPI_LAB_HOST="lab.yaml") == b""


def test_list_after_a_refused_one(zfc):
    fault = {"TORPI_LAB_FAULTS": "TORPI_GetAdapterList=null:once"}
    assert errors(zfc, "-t adapter listcli", **fault) == b""
    assert errors(zfc, "", b"-t adapter listcli\n-t adapter listcli\nq\n", **fault) == NOTICE % b"built-in"


@pytest.mark.parametrize("library", ["hostile", "sparse"])
def test_other_libraries_have_none(zfc, library):
    assert errors(zfc, "-t adapter list", library=library) == b""
