"""Completion in real shells at a terminal: all that is offered is put into the line, which then shows its words."""

import re
import shlex

import pytest

from zfc.reference import identifiers
from zfc.runner import BUILD, EXECUTABLE
from zfc.terminal import Session

SHARE = BUILD / "share"
PROMPT = b"@prompt@"
PORT = "FC_21:00:00:0e:1e:11:22:33"

BASH = f"""
PS1='@prom''pt@'
bind 'set enable-bracketed-paste off'
bind 'set bell-style none'
bind 'set horizontal-scroll-mode on'
bind '"\\C-t": insert-completions'
source {shlex.quote(str(SHARE))}/bash-completion/completions/zfcesxcli
words() {{ echo; printf '<%s>\\n' "$@"; }}
"""

ZSH = f"""
PS1='@prom''pt@'
unset zle_bracketed_paste
unsetopt prompt_cr prompt_sp
zle_highlight=()
fpath=({shlex.quote(str(SHARE))}/zsh/site-functions $fpath)
autoload -U compinit && compinit -D -u
all_matches() {{ _main_complete; compstate[insert]=all; compstate[list]=; }}
zle -C all-matches complete-word all_matches
bindkey '^T' all-matches
words() {{ echo; printf '<%s>\\n' "$@"; }}
"""

SHELLS = {
    "bash": ("/usr/bin/bash", "--norc --noprofile -i", BASH),
    "zsh": ("/usr/bin/zsh", "-f -i", ZSH),
}


@pytest.fixture(params=SHELLS)
def shell(request, zfc):
    program, words, setup = SHELLS[request.param]
    env = {"HOME": str(zfc.work), "TERM": "dumb", "HISTFILE": ""}

    def start(**more):
        session = Session(zfc, words, program=program, library="simulated", env=env | more)
        zfc.file("setup", setup.encode())
        session.send(b". ./setup\n")
        session.expect(PROMPT)
        return session

    start.name = request.param
    return start


def completed(session, typed):
    """The words that the line has once all that is offered is put in: those of the command after `typed`."""
    session.send(typed.encode() + b"\x14" + b"\x01words \x05\n")
    shown, seconds = session.expect(PROMPT)
    lines = re.sub(rb"\x1b\[[0-9;?]*[a-zA-Z]", b"", shown).replace(b"\r", b"").decode().split("\n")
    words = [line[1:-1] for line in lines if line.startswith("<") and line.endswith(">")]
    return words, seconds


def offered(session, typed):
    """What is offered for the last word of `typed`."""
    words, _ = completed(session, typed)
    before = typed.split()[1:] if typed.endswith(" ") else typed.split()[1:-1]
    assert words[0] == typed.split()[0] and [word.lower() for word in words[1 : len(before) + 1]] == [
        word.lower() for word in before
    ]
    return words[len(before) + 1 :]


OFFERS = [
    ("", ["help", "-t"]),
    ("-t ", ["adapter", "port"]),
    ("-t ad", ["adapter"]),
    ("-t port ", ["-s"]),
    ("-t port -s ", ["dmi", "fec"]),
    ("-t port -s fe", ["fec"]),
    ("-t port -s fec ", ["get", "getcli", "set", "setcli", "help"]),
    ("-t port -s fec set", ["set", "setcli"]),
    ("-t PORT -s Fec setc", ["setcli"]),
    (f"-t port -s fec set {PORT} ", ["--fec-status", "-f", "--reset", "-r"]),
    (f"-t port -s fec set {PORT} --", ["--fec-status", "--reset"]),
    (f"-t port -s fec set {PORT} --fec-status ", ["true", "false"]),
    (f"-t port -s fec set {PORT} -f t", ["true"]),
    (f"-t port -s fec set {PORT} -f true --r", ["--reset"]),
    (f"-t port -s dmi save {PORT} file ", ["Binary", "Text"]),
    (f"-t port -s dmi save {PORT} file B", ["Binary"]),
    ("-eng -t port -s fec setc", ["setcli"]),
]


def test_words_are_offered(shell):
    with shell() as session:
        for typed, wanted in OFFERS:
            got = offered(session, f"zfcesxcli {typed}")
            assert {*wanted} <= {*got}, typed
            if typed and not typed.startswith(("-t ", "-eng")) or len(typed.split()) > 3:
                assert sorted(got) == sorted(wanted), typed


def test_nothing_is_offered_for_nonsense(shell):
    with shell() as session:
        for typed in ("zfcesxcli -t nothing ", "zfcesxcli -t port -s fec nothing ", "zfcesxcli -t port -s fec set x -f "):
            words, _ = completed(session, typed + "zzz")
            assert words == [*typed.split(), "zzz"]


@pytest.mark.parametrize(
    "typed, kind",
    [("zfcesxcli -t adapter -s flashinfo get ", "adapter"), ("zfcesxcli -t port -s fec get ", "port")],
)
def test_identifiers_are_those_of_the_host(shell, zfc, typed, kind):
    with shell() as session:
        assert sorted(offered(session, typed)) == sorted(identifiers(zfc)[kind])


def test_identifier_is_completed_across_its_colons(shell):
    with shell() as session:
        assert offered(session, "zfcesxcli -t port -s fec get FC_21:00:f4:c7:aa:2c") == ["FC_21:00:f4:c7:aa:2c:00:08"]


def test_files_are_offered(shell, zfc):
    zfc.file("image one.fw")
    with shell() as session:
        assert offered(session, f"zfcesxcli -t port -s dmi update {PORT} imag") == ["image one.fw"]


SERIALS = ["$(touch touched)", "`touch touched`", "'; touch touched;'", '"$PATH"', "a b", "a\nAdapters: $(touch touched)", "*"]


def test_texts_of_devices_do_nothing(shell, zfc):
    host = "adapters:\n" + "".join(
        f"  - {{family: elm, model: ZX, serial: {quoted}, ports: [{{}}]}}\n"
        for quoted in ('"' + serial.replace('"', '\\"').replace("\n", "\\n") + '"' for serial in SERIALS)
    )
    path = zfc.file("host.yaml", host.encode())
    printed = zfc("-t adapter listcli", library="simulated", env={"TORPI_LAB_HOST": str(path)}).stdout.decode()
    listed = [line.removeprefix("Adapters: ") for line in printed.split("\n") if line.startswith("Adapters: ")]
    assert len(listed) == len(SERIALS) + 1  # the line break makes a line more
    with shell(TORPI_LAB_HOST=str(path)) as session:
        assert sorted(offered(session, "zfcesxcli -t adapter -s flashinfo get ")) == sorted(listed)
    assert not (zfc.work / "touched").exists()


@pytest.mark.parametrize(
    "script",
    [
        pytest.param("sleep 30", id="slow"),
        pytest.param("echo no >&2; exit 3", id="failing"),
        pytest.param("exec 1>&-", id="silent"),
    ],
)
def test_program_that_fails_or_hangs_is_silent(shell, zfc, script):
    program = zfc.file("zfcesxcli", f"#!/bin/sh\n{script}\n".encode())
    program.chmod(0o755)
    with shell(PATH=f"{zfc.work}:/usr/bin:/bin") as session:
        words, seconds = completed(session, "zfcesxcli -t port -s fec get x")
        assert words == ["zfcesxcli", "-t", "port", "-s", "fec", "get", "x"]
        assert seconds < 3


def test_scripts_have_no_mistakes(zfc):
    """The shells read them without running them."""
    for shell, script in (("bash", "bash-completion/completions/zfcesxcli"), ("zsh", "zsh/site-functions/_zfcesxcli")):
        zfc(["-n", str(SHARE / script)], program=f"/usr/bin/{shell}")
        assert str(EXECUTABLE.parent) not in (SHARE / script).read_text()
