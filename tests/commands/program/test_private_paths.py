"""The way of a run without a mount namespace: tests/support/private_paths.c gives it the private folders."""

import shlex
import subprocess

import pytest

from zfc.runner import BUILD, EXECUTABLE, ROOT

PRIVATE_RUN = BUILD / "tests" / "private_run"
STAGING = "/opt/ZunaFcEsxcliPlugin/tmp"


@pytest.fixture
def run(zfc):
    """Runs a shell script without a namespace; returns status, standard output and standard error."""

    def run(script, *options, library="hostile"):
        argv, env = zfc.command(["-c", f"zfc={shlex.quote(str(EXECUTABLE))}\n{script}"], program="/bin/sh", library=library)
        argv[1:1] = ["--no-namespace", *options]
        done = subprocess.run(argv, capture_output=True, env=env, timeout=60)
        return done.returncode, done.stdout.decode(), done.stderr.decode()

    return run


@pytest.mark.parametrize("place, name", [("/tmp", "tmp"), ("/var/tmp", "var_tmp"), (STAGING, "staging")])
def test_files_of_a_fixed_place_are_private(run, zfc, place, name):
    made = zfc.folder / name
    script = f"""set -e
cd {place}; pwd; /bin/pwd
echo one >{place}/a; cat a; chmod 600 {place}/a; mv {place}/a {place}/b; ln {place}/b {place}/c; cp {place}/b {place}/d
ln -s {place}/d {place}/e; cat {place}/e; readlink {place}/e; readlink -f {place}/e
mkdir {place}/f; rmdir {place}/f; rm {place}/c; truncate -s 2 {place}/d; [ -s {place}/d ]; stat -c %a {place}/b; ls {place}"""
    expected = f"{place}\n{place}\none\none\n{place}/d\n{place}/d\n600\nb\nd\ne\n"
    assert run(script) == (0, expected, "")
    assert (made / "b").read_text() == "one\n" and (made / "d").read_text() == "on" and (made / "e").is_symlink()


def test_made_up_names(run, zfc):
    status, stdout, stderr = run("set -e; mktemp; mktemp -d; mktemp -p /var/tmp")
    assert (status, stderr) == (0, "")
    found = [f"/{path.parent.name.replace('_', '/')}/{path.name}" for path in (*zfc.tmp.iterdir(), *zfc.var_tmp.iterdir())]
    assert sorted(found) == sorted(stdout.splitlines()) and len(found) == 3


def test_paths_that_are_kept(run, tmp_path):
    beside = tmp_path / "beside"
    beside.mkdir()
    assert run(f"echo one >{shlex.quote(str(beside))}/file; cd {shlex.quote(str(ROOT))}; ls README.md", "--keep", str(beside)) == (0, "README.md\n", "")
    assert (beside / "file").read_text() == "one\n"


def test_program(run, zfc):
    status, stdout, stderr = run('ZNFC_DEBUG_LEVEL=1 "$zfc" -t adapter listcli')
    assert (status, stderr) == (0, "") and "AdapterList" in stdout
    assert sorted(path.name for path in zfc.var_tmp.iterdir()) == ["torpi-output.log", "zfcesxcli.log"]


def test_read_only_var_tmp(run, zfc):
    (zfc.var_tmp / "there").write_text("one\n")
    script = "for word in 'touch /var/tmp/made' 'rm /var/tmp/there' 'mkdir /var/tmp/folder' 'cat /var/tmp/there'; do $word; done"
    status, stdout, stderr = run(script, "--read-only-var-tmp")
    assert (status, stdout) == (0, "one\n") and stderr.count("Read-only file system") == len(stderr.splitlines()) == 3
    assert [path.name for path in zfc.var_tmp.iterdir()] == ["there"]


def test_full_folder(run, zfc):
    status, _, stderr = run("PRIVATE_PATHS_FULL=/tmp dd if=/dev/zero of=/tmp/made bs=1 count=1")
    assert status == 1 and "No space left on device" in stderr
    assert (zfc.tmp / "made").read_bytes() == b""


def test_mounts_are_refused(run, zfc):
    status, _, stderr = run("mount --bind \"$PWD\" \"$PWD\" && umount \"$PWD\"")
    assert status != 0 and stderr.startswith(f"mount: {zfc.work}: ")


def test_without_a_namespace_of_its_own_it_says_so():
    """A user namespace in which nobody may make another one."""
    closed = "echo 0 >/proc/sys/user/max_user_namespaces; echo 0 >/proc/sys/user/max_mnt_namespaces; exec \"$0\" --has-namespace"
    done = subprocess.run(["unshare", "--user", "--map-root-user", "sh", "-c", closed, PRIVATE_RUN], capture_output=True, text=True)
    if done.returncode == 1 and done.stderr.startswith("unshare: "):
        pytest.skip("user namespaces are refused on this machine")
    assert (done.returncode, done.stderr) == (1, "private_run: this machine refuses a namespace: No space left on device\n")
