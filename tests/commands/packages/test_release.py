"""scripts/release, up to the long runs: in a repository of its own, with what the script reads."""

import shutil
import subprocess

import pytest

from zfc.runner import ROOT

READ = ("scripts/release", "packaging/changelog.py", "CMakeLists.txt", "CHANGELOG.md")


@pytest.fixture
def repository(tmp_path):
    for name in READ:
        (tmp_path / name).parent.mkdir(exist_ok=True)
        shutil.copy(ROOT / name, tmp_path / name)
    (tmp_path / "CMakeLists.txt").write_text("project(zfcesxcli VERSION 3.2.1 LANGUAGES C)\n")
    (tmp_path / "CHANGELOG.md").write_text("# Changelog\n\n## [3.2.1] - 2026-01-02\n\n- Something.\n\n## [3.2.0]\n\n- Else.\n")
    git(tmp_path, "init", "--quiet")
    git(tmp_path, "add", ".")
    git(tmp_path, "commit", "--quiet", "--message", "All")
    return tmp_path


def git(folder, *words):
    name = ("-c", "user.name=Somebody", "-c", "user.email=somebody@zfcesxcli.example")
    done = subprocess.run(["git", *name, *words], cwd=folder, check=True, capture_output=True, text=True)
    return done.stdout.strip()


def release(folder, *words):
    return subprocess.run([folder / "scripts" / "release", *words], capture_output=True, text=True)


def test_dry_run_says_what_would_be_done(repository):
    done = release(repository, "3.2.1", "--dry-run")
    assert (done.returncode, done.stderr) == (0, "")
    assert done.stdout.splitlines() == [
        "Ready. Would run: scripts/test scripts/check-reproducible scripts/try-packages scripts/try-old-host",
        "Would write build/release-3.2.1 with the packages, SHA256SUMS and NOTES.md:",
        "- Something.",
        f'To tag: git tag -a v3.2.1 -m "zfcesxcli 3.2.1" {git(repository, "rev-parse", "HEAD")}',
    ]
    assert git(repository, "status", "--porcelain") == "" and not (repository / "build").exists()
    assert git(repository, "tag") == ""


def test_version_has_to_be_the_projects(repository):
    done = release(repository, "3.2.0", "--dry-run")
    assert (done.returncode, done.stdout) == (1, "")
    assert done.stderr == "release: CMakeLists.txt has version 3.2.1\n"


@pytest.mark.parametrize("text", ["# Changelog\n", "## [3.2.1]\n\n## [3.2.0]\n\n- Else.\n", "## [3.2.10]\n\n- Else.\n"])
def test_changelog_has_to_say_something(repository, text):
    (repository / "CHANGELOG.md").write_text(text)
    git(repository, "commit", "--all", "--quiet", "--message", "Less")
    done = release(repository, "3.2.1", "--dry-run")
    assert done.returncode == 1
    assert done.stderr.splitlines()[-1] == "release: the changelog says nothing of 3.2.1"


@pytest.mark.parametrize("name", ["CMakeLists.txt", "new"])
def test_work_tree_has_to_be_clean(repository, name):
    with open(repository / name, "a") as file:
        file.write("\n")
    done = release(repository, "3.2.1")
    assert (done.returncode, done.stderr) == (1, "release: the work tree is not clean\n")


def test_tag_must_not_be_there(repository):
    git(repository, "tag", "v3.2.1")
    done = release(repository, "3.2.1", "--dry-run")
    assert (done.returncode, done.stderr) == (1, "release: the tag v3.2.1 is there already\n")


def test_everything_wrong_is_said_at_once(repository):
    (repository / "new").write_text("")
    done = release(repository, "9.9.9", "--dry-run")
    assert done.returncode == 1
    assert [line for line in done.stderr.splitlines() if line.startswith("release: ")] == [
        "release: CMakeLists.txt has version 3.2.1",
        "release: the changelog says nothing of 9.9.9",
        "release: the work tree is not clean",
    ]


@pytest.mark.parametrize("words", [[], ["3.2"], ["v3.2.1"], ["3.2.1", "--dry"], ["3.2.1", "--dry-run", "x"]])
def test_usage(repository, words):
    done = release(repository, *words)
    assert (done.returncode, done.stderr) == (2, "usage: scripts/release VERSION [--dry-run]\n")
