"""The model of a loss of power, against sequences of steps whose outcomes are worked out by hand."""

import itertools

import pytest

from zfc.power_loss import FOLDER, Step, states, subsets


def make(path, content=b""):
    return [Step("make", path), Step("write", path, content=content)]


def sync(path):
    return [Step("sync", path)]


def outcomes(before, *parts):
    """What a finished run may leave, each tree as a dictionary."""
    return [dict(tree) for tree in states(before, [step for part in parts for step in part])[2]]


def contents(trees, path):
    return {tree.get(path) for tree in trees}


def test_a_new_file_may_be_lost_empty_or_cut():
    found = outcomes({}, make("/d/f", b"abcdef"))
    assert contents(found, "/d/f") == {None, b"", b"abc", b"abcd", b"abcdef"}


def test_a_synced_file_is_whole_or_lost():
    assert contents(outcomes({}, make("/d/f", b"abcdef"), sync("/d/f")), "/d/f") == {None, b"abcdef"}


def test_a_synced_name_of_an_unsynced_file():
    assert None not in contents(outcomes({}, make("/d/f", b"abcdef"), sync("/d")), "/d/f")


def test_both_synced_is_certain():
    assert outcomes({}, make("/d/f", b"abcdef"), sync("/d/f"), sync("/d")) == [{"/d/f": b"abcdef"}]


def test_a_file_that_is_cut_may_be_anything():
    found = outcomes({"/d/f": b"old"}, [Step("cut", "/d/f"), Step("write", "/d/f", content=b"newer!")])
    assert contents(found, "/d/f") == {b"old", b"", b"new", b"newe", b"newer!"}


def test_a_file_that_grows_is_never_empty():
    found = outcomes({"/d/f": b"ab"}, [Step("open", "/d/f"), Step("write", "/d/f", content=b"abcdef")])
    assert contents(found, "/d/f") == {b"ab", b"abc", b"abcd", b"abcdef"}


def test_a_rename_over_an_old_file_without_a_sync():
    """The well-known case: the new name on an empty file."""
    found = outcomes({"/d/f": b"old"}, make("/d/t", b"new"), [Step("rename", "/d/t", "/d/f")])
    assert {b"old", b"new", b""} <= contents(found, "/d/f") and None not in contents(found, "/d/f")


def test_a_rename_over_an_old_file_with_a_sync():
    found = outcomes({"/d/f": b"old"}, make("/d/t", b"new"), sync("/d/t"), [Step("rename", "/d/t", "/d/f")])
    assert sorted(map(sorted, (tree.items() for tree in found))) == [
        [("/d/f", b"new")],
        [("/d/f", b"old")],
        [("/d/f", b"old"), ("/d/t", b"new")],
    ]


def test_a_removal_may_come_before_the_name_of_the_copy():
    """Why the folder has a sync before the old file goes."""
    steps = [*make("/d/t", b"new"), *sync("/d/t"), Step("unlink", "/d/f"), Step("rename", "/d/t", "/d/f")]
    assert {} in outcomes({"/d/f": b"old"}, steps)
    steps[3:3] = sync("/d")
    assert all({b"old", b"new"} & {*tree.values()} for tree in outcomes({"/d/f": b"old"}, steps))


def test_a_removed_file_may_be_back():
    assert contents(outcomes({"/d/f": b"old"}, [Step("unlink", "/d/f")]), "/d/f") == {None, b"old"}
    assert outcomes({"/d/f": b"old"}, [Step("unlink", "/d/f")], sync("/d")) == [{}]


def test_a_link_is_a_second_name():
    names = [Step("link", "/d/t", "/d/f"), Step("unlink", "/d/t")]
    assert outcomes({}, make("/d/t", b"new"), sync("/d/t"), names, sync("/d")) == [{"/d/f": b"new"}]


def test_a_lost_folder_takes_its_files_along():
    steps = [Step("mkdir", "/d/sub"), *make("/d/sub/f", b"x"), *sync("/d/sub/f"), *sync("/d/sub")]
    assert sorted(map(len, outcomes({}, steps))) == [0, 2]
    assert outcomes({}, steps, sync("/d")) == [{"/d/sub": FOLDER, "/d/sub/f": b"x"}]


def test_a_kill_leaves_what_all_processes_saw():
    steps = [*make("/d/t", b"new"), Step("unlink", "/d/f"), Step("rename", "/d/t", "/d/f"), Step("exit", "")]
    killed = states({"/d/f": b"old"}, steps)[0]
    assert [dict(tree) for tree in killed] == [
        {"/d/f": b"old"},
        {"/d/f": b"old", "/d/t": b""},
        {"/d/f": b"old", "/d/t": b"new"},
        {"/d/t": b"new"},
        {"/d/f": b"new"},
    ]
    assert [*killed.values()] == [1, 2, 3, 4, 5]


def test_changes_of_one_name_keep_their_order():
    """A new copy is not there before the old one has left its name."""
    steps = [Step("unlink", "/d/f"), Step("rename", "/d/t", "/d/f"), Step("make", "/d/t")]
    found = outcomes({"/d/f": b"old", "/d/t": b"new"}, steps)
    assert {tuple(sorted(tree.items())) for tree in found} == {
        (("/d/f", b"old"), ("/d/t", b"new")),
        (("/d/t", b"new"),),
        (("/d/f", b"new"),),
        (("/d/f", b"new"), ("/d/t", b"")),
    }


@pytest.mark.parametrize("count", range(4))
def test_up_to_three_changes_have_all_subsets(count):
    expected = {kept for size in range(count + 1) for kept in itertools.combinations(range(count), size)}
    assert {*subsets(count)} == expected and len(subsets(count)) == len(expected)
