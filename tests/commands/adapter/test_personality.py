"""The personality node: `get` and `set` in both forms."""

import pytest

from zfc import documents
from zfc.documents import check_both
from zfc.host import ELM, IDENTIFIER, NO_LIST, Fc, every_device, one
from zfc.runner import chatter

GET = "-t adapter -s personality get"
SET = "-t adapter -s personality set"
GET_USAGE = "Usage: get [adapter identifier]\r\n"
SET_USAGE = "Usage: set [adapter identifier]\r\n"

LIST_CALL = "TORPI_GetAdapterList()"
CHECK = "TORPI_CheckOrindaPersonalityChangeOption"
READ = "TORPI_GetPersonalityType"
CHANGE = "TORPI_ChangePersonalityType"
CHECK_CALL = f"{CHECK}(port)"
READ_CALL = f"{READ}(port)"
CHANGE_CALL = f"{CHANGE}(port, {{}})"

ELM_HOST = one(0x3432)
VIRTUAL_ELM = one(fc=Fc(device=0x3432, interface=3))
VIRTUAL_ASTER = one(fc=Fc(device=0x3A02, interface=3))
CNA_DEVICES = (0x7102, 0x7122)


def check_get(zfc, shown, words=(IDENTIFIER,), *, message="Success", usage="", **options):
    values = {"message": message, "personality": shown}
    return check_both(zfc, GET, "adapter/personality/report", words=words, values=values, usage=usage, **options)


def check_set(zfc, shown, words, *, reboot, message="Success", usage="", **options):
    values = {"message": message, "personality": shown, "reboot": reboot}
    options = {"host": ELM_HOST, **options}
    return check_both(zfc, SET, "adapter/personality/set", words=words, values=values, usage=usage, **options)


# get: the Elm family is asked, the device decides for all others.
@pytest.mark.parametrize("device", every_device(), ids=hex)
def test_get_of_each_family(zfc, device):
    if device in ELM:
        result = check_get(zfc, "CNA", host=one(device), personality=1)
        assert result.command_calls == [LIST_CALL, READ_CALL]
    else:
        shown = "CNA" if device in CNA_DEVICES else "FC"
        result = check_get(zfc, shown, host=one(device), personality=1)
        assert result.command_calls == [LIST_CALL]


@pytest.mark.parametrize(
    "value, shown", [(0, "FC"), (1, "CNA"), (2, "Unknown"), (128, "Unknown"), (255, "Unknown")]
)
def test_get_shows_the_value_read(zfc, value, shown):
    check_get(zfc, shown, host=ELM_HOST, personality=value)


def test_get_of_another_vendor_reads_nothing(zfc):
    for device in (0x3432, 0x7122):
        result = check_get(zfc, "FC", host=one(fc=Fc(device=device, vendor=0x1077)), personality=1)
        assert result.command_calls == [LIST_CALL]


@pytest.mark.parametrize(
    "words, options, message, usage, calls",
    [
        pytest.param([], {}, "Failed, Invalid parameter", GET_USAGE, [], id="no identifier"),
        pytest.param(["nobody"], {}, "Failed, Invalid parameter", GET_USAGE, [], id="bad identifier"),
        pytest.param(["help"], {}, "Failed, Unknown", GET_USAGE, [], id="help word"),
        pytest.param([IDENTIFIER], {"host": NO_LIST}, "Failed, Host not found", "", [LIST_CALL], id="no list"),
        pytest.param(
            [IDENTIFIER],
            {"host": VIRTUAL_ELM},
            "Failed, Feature not supported for virtual port",
            "",
            [LIST_CALL],
            id="virtual port",
        ),
        pytest.param(
            [IDENTIFIER],
            {"host": VIRTUAL_ASTER},
            "Failed, Feature not supported for virtual port",
            "",
            [LIST_CALL],
            id="virtual port of another family",
        ),
        *[
            pytest.param(
                [IDENTIFIER],
                {"host": ELM_HOST, "results": {READ: result}},
                "Failed, Personality read failed",
                "",
                [LIST_CALL, READ_CALL],
                id=f"read fails with {result}",
            )
            for result in (1, 150, 151, 0xFFFFFFFF)
        ],
    ],
)
def test_get_failure(zfc, words, options, message, usage, calls):
    result = check_get(zfc, "Unknown", words, message=message, usage=usage, **options)
    assert result.command_calls == calls


# set: word, personality in force, what is shown and what is changed.
@pytest.mark.parametrize(
    "word, before, shown, change",
    [
        ("FC", 1, "FC", 0),
        ("CNA", 0, "CNA", 1),
        ("FC", 0, "FC", None),
        ("CNA", 1, "CNA", None),
        ("FC", 2, "FC", 0),
        ("CNA", 255, "CNA", 1),
        ("fc", 1, "FC", 0),
        ("cna", 0, "CNA", 1),
        ("cNa", 0, "CNA", 1),
        ("CNAS", 1, "FC", 0),
        ("anything", 1, "FC", 0),
        ("anything", 0, "FC", None),
        ("1", 1, "FC", 0),
        ("", 1, "FC", 0),
        ("?", 1, "FC", 0),
        ("help", 1, "FC", 0),
    ],
)
def test_set(zfc, word, before, shown, change):
    result = check_set(zfc, shown, [IDENTIFIER, word], reboot="true", personality=before)
    changes = [] if change is None else [CHANGE_CALL.format(change)]
    assert result.command_calls == [LIST_CALL, CHECK_CALL, READ_CALL, *changes]


@pytest.mark.parametrize("device", every_device(), ids=hex)
def test_set_of_each_family(zfc, device):
    if device in ELM:
        check_set(zfc, "CNA", [IDENTIFIER, "CNA"], reboot="true", host=one(device))
    else:
        message = "Failed, Feature not supported for this adapter"
        result = check_set(
            zfc, "Unknown", [IDENTIFIER, "CNA"], reboot="false", message=message, host=one(device)
        )
        assert result.command_calls == [LIST_CALL]


def test_set_ignores_more_words(zfc):
    check_set(zfc, "CNA", [IDENTIFIER, "CNA", "FC", "?"], reboot="true")


NOT_ALLOWED = "Failed, Personality change not allowed for user"


@pytest.mark.parametrize(
    "answer, allowed", [(1, True), (0x101, True), (0, False), (2, False), (0x100, False), (255, False)]
)
def test_set_asks_whether_the_user_may(zfc, answer, allowed):
    """The low eight bits of the answer count."""
    results = {CHECK: answer}
    if allowed:
        check_set(zfc, "CNA", [IDENTIFIER, "CNA"], reboot="true", results=results)
    else:
        result = check_set(
            zfc, "Unknown", [IDENTIFIER, "CNA"], reboot="false", message=NOT_ALLOWED, results=results
        )
        assert result.command_calls == [LIST_CALL, CHECK_CALL]


# The checks in their order: each row fails at one check and at all after it.
INVALID, UNSUPPORTED = "Failed, Invalid parameter", "Failed, Feature not supported for this adapter"
VIRTUAL = "Failed, Feature not supported for virtual port"
MAINTENANCE = "Failed, Command not supported when adapter port in maintenance mode"
ALL_FAIL = {CHECK: 0, READ: 1, CHANGE: 1}
ID, FULL = [IDENTIFIER], [IDENTIFIER, "CNA"]


@pytest.mark.parametrize(
    "words, host, results, message, usage, calls",
    [
        pytest.param([], VIRTUAL_ASTER, ALL_FAIL, INVALID, SET_USAGE, [], id="no identifier"),
        pytest.param(["nobody", "CNA"], VIRTUAL_ASTER, ALL_FAIL, INVALID, SET_USAGE, [], id="bad identifier"),
        pytest.param(["help", "CNA"], VIRTUAL_ASTER, ALL_FAIL, "Failed, Unknown", SET_USAGE, [], id="help word"),
        pytest.param(FULL, NO_LIST, ALL_FAIL, "Failed, Host not found", "", [LIST_CALL], id="no list"),
        pytest.param(ID, VIRTUAL_ASTER, ALL_FAIL, UNSUPPORTED, "", [LIST_CALL], id="family"),
        pytest.param(ID, VIRTUAL_ELM, ALL_FAIL, VIRTUAL, "", [LIST_CALL], id="virtual port"),
        pytest.param(ID, ELM_HOST, ALL_FAIL, NOT_ALLOWED, "", [LIST_CALL, CHECK_CALL], id="not allowed"),
        pytest.param(ID, ELM_HOST, {READ: 1}, INVALID, SET_USAGE, [LIST_CALL, CHECK_CALL], id="no personality"),
        *[
            pytest.param(
                FULL,
                ELM_HOST,
                {READ: result, CHANGE: 1},
                "Failed, Personality read failed",
                "",
                [LIST_CALL, CHECK_CALL, READ_CALL],
                id=f"read fails with {result}",
            )
            for result in (1, 150)
        ],
        *[
            pytest.param(
                FULL,
                ELM_HOST,
                {CHANGE: result},
                message,
                "",
                [LIST_CALL, CHECK_CALL, READ_CALL, CHANGE_CALL.format(1)],
                id=f"change fails with {result}",
            )
            for result, message in (
                (1, "Failed, Personality change failed"),
                (149, "Failed, Personality change failed"),
                (150, MAINTENANCE),
                (151, "Failed, Personality change failed"),
                (0xFFFFFFFF, "Failed, Personality change failed"),
            )
        ],
    ],
)
def test_set_failure(zfc, words, host, results, message, usage, calls):
    result = check_set(
        zfc, "Unknown", words, reboot="false", message=message, usage=usage, host=host, results=results
    )
    assert result.command_calls == calls


class TestEdgeCases:
    def test_set_to_the_value_in_force_is_a_success_with_reboot_and_no_change_call(self, zfc):
        result = check_set(zfc, "CNA", FULL, reboot="true", personality=1, results={CHANGE: 1})
        assert result.command_calls == [LIST_CALL, CHECK_CALL, READ_CALL]

    def test_get_on_ginkgo_is_cna_with_no_library_call(self, zfc):
        result = check_get(zfc, "CNA", host=one(0x7122), results={READ: 1})
        assert result.command_calls == [LIST_CALL]

    def test_missing_personality_word_changes_nothing(self, zfc):
        result = check_set(
            zfc, "Unknown", ID, reboot="false", message=INVALID, usage=SET_USAGE, personality=1
        )
        assert result.command_calls == [LIST_CALL, CHECK_CALL]

    def test_calls_of_this_node_are_made_without_the_bracket(self, zfc):
        prefix = chatter("TORPI_GetAdapterList", CHECK, READ, CHANGE)
        calls = ("TORPI_GetAdapterList", CHECK, READ, CHANGE)
        result = check_set(zfc, "CNA", FULL, reboot="true", chatter=calls, prefix=prefix)
        assert b"chatters" not in result.xml.library_log

    def test_set_is_seen_by_the_next_get_of_one_session(self, zfc):
        lines = [f"-t adapter -s personality {command} {IDENTIFIER}" for command in ("getcli", "setcli", "getcli")]
        lines[1] += " CNA"
        output = zfc(stdin="\n".join([*lines, "q", ""]).encode(), host=ELM_HOST).stdout
        shown = [line for line in output.split(b"\n") if line.startswith(b"Personality: ")]
        assert shown == [b"Personality: FC", b"Personality: CNA", b"Personality: CNA"]


@pytest.mark.parametrize("words", ["help", "HELP", "help ?", "help more"])
def test_help(zfc, words):
    result = zfc(f"-t adapter -s personality {words}")
    documents.check(result.stdout, "adapter/personality/help.txt")
    assert result.command_calls == []


@pytest.mark.parametrize(
    "words, text",
    [
        ("get ?", ""),
        ("set ?", ""),
        (f"set ? {IDENTIFIER} CNA", ""),
        ("getcli ?", GET_USAGE),
        ("setcli ?", SET_USAGE),
        (f"setcli ? {IDENTIFIER} CNA", SET_USAGE),
    ],
)
def test_question_mark_prints_the_usage_of_the_leaf(zfc, words, text):
    result = zfc(f"-t adapter -s personality {words}")
    assert result.stdout == text.encode()
    assert result.command_calls == []


CLASS = "AdapterPersonalityCmdsProcessor"
GET_COMMON = f"{CLASS}::CmdGetCommon"
SET_COMMON = f"{CLASS}::CmdSetCommon"


@pytest.mark.parametrize(
    "words, options, failures",
    [
        (
            "get nobody",
            {},
            [
                "AdapterCmdsProcessor::GetPhyPortFromAdapterString: Invalid Adapter identifier nobody",
                f"{GET_COMMON}: Get phy port failed err=6",
            ],
        ),
        (f"get {IDENTIFIER}", {"host": one(fc=Fc(interface=3))}, [f"{GET_COMMON}: Command not supported for vport"]),
        (
            f"get {IDENTIFIER}",
            {"host": one(0x3432), "results": {"TORPI_GetPersonalityType": 1}},
            [f"{GET_COMMON}: failed to read personality"],
        ),
        ("set help", {}, [f"{SET_COMMON}: Get phy port failed err=5"]),
        (f"set {IDENTIFIER} FC", {}, [f"{SET_COMMON}: feature not supported for this adapter"]),
        (
            f"set {IDENTIFIER} FC",
            {"host": VIRTUAL_ELM},
            [f"{SET_COMMON}: Command not supported for vport"],
        ),
        (
            f"set {IDENTIFIER} FC",
            {"host": one(0x3432), "results": {"TORPI_CheckOrindaPersonalityChangeOption": 0}},
            [f"{SET_COMMON}: personality change by user not supported"],
        ),
        (
            f"set {IDENTIFIER} FC",
            {"host": one(0x3432), "results": {"TORPI_GetPersonalityType": 150}},
            [f"{SET_COMMON}: failed to read personality"],
        ),
        (
            f"set {IDENTIFIER} CNA",
            {"host": one(0x3432), "results": {"TORPI_ChangePersonalityType": 150}},
            [f"{SET_COMMON}: failed to change personality"],
        ),
    ],
)
def test_failures_in_the_log(zfc, words, options, failures):
    assert zfc(f"-t adapter -s personality {words}", debug=4, **options).failures == failures
