"""What the role does on a host, on the controller's side: each step is a command over the connection, so that the host
needs a shell and zfc-json, and no Python.

    zfc_fleet:
      operation: report | profile | flash
      command: what runs zfc-json with the words that follow
      parameters: {data-rate: 16_Gbps, ...}              of a profile
      models: [ZX320, ...]                               of a profile; none means all
      images: {ZX100: {file: ..., kind: MBI, version: ...}}  of a flash update
"""

import json
import shlex

from ansible.errors import AnsibleConnectionFailure
from ansible.plugins.action import ActionBase

# The options of `hbaparams setFile`, and the fields in which its documents show their values.
PARAMETERS = {
    "connection-options": "Connection Options",
    "data-rate": "Data Rate",
    "operation-mode": "Operation Mode",
    "frame-size": "Frame Size",
    "enable-hard-loop-id": "Enable Hard Loop Id",
    "hard-loop-id": "Hard Loop Id",
    "loop-reset-delay": "Loop Reset Delay In Seconds",
    "interrupt-delay-timer": "Interrupt Delay Timer In 100us",
    "execution-throttle": "Execution Throttle",
    "login-retry-count": "Login Retry Count",
    "port-down-retry-count": "Port Down Retry Count",
    "link-down-timeout": "Link Down Timeout In Seconds",
    "luns-per-target": "Luns Per Target",
    "enable-lr": "Enable LR",
    "enable-bios": "Enable Host Hba Bios",
    "enable-fc-tape": "Enable Fc Tape Support",
    "enable-lip-full-login": "Enable Lip Full Login",
    "enable-target-reset": "Enable Target Reset",
    "enable-fabric-assigned-wwn": "Enable Fabric Assigned WWN",
    "enable-vclm": "Enable VCLM",
    "virtual-lane": "Virtual Lane",
}

# The line of `adapter info` that shows the version which an image of this kind brings.
VERSION_LINES = {
    "MBI": "Multiboot Version",
    "BrdCfg": "Flash FC Board Config Version",
    "FWPreload": "Flash Preload Firmware Area Version",
    "PEPCfg": "Flash PEP Board Config Version",
}

NOT_THERE = "NA"  # the value of a parameter that an adapter does not have
VIRTUAL_PORT = "Failed, Feature not supported for virtual port"


class Refusal(Exception):
    """Why a host's task has failed. What it has done until then stays in its result."""


class ActionModule(ActionBase):
    TRANSFERS_FILES = False
    _supports_check_mode = True
    _supports_async = False

    def run(self, tmp=None, task_vars=None):
        result = super().run(tmp, task_vars)
        result.update(changed=False)
        operations = {"report": self._report, "profile": self._profile, "flash": self._flash}
        operation = operations.get(self._task.args.get("operation"))
        try:
            self._words = shlex.split(self._task.args.get("command") or "")
            if not self._words:
                raise Refusal("command: expected what runs zfc-json")
            if operation is None:
                raise Refusal(f"operation: expected one of {', '.join(operations)}")
            operation(result)
        except Refusal as refusal:
            result.update(failed=True, msg=str(refusal))
        return result

    # Commands.

    def _shell(self, words):
        command = " ".join(shlex.quote(word) for word in words)
        try:
            return self._low_level_execute_command(command, sudoable=False)
        except AnsibleConnectionFailure as error:
            # A failure: with `serial`, Ansible goes on to the next host when one is unreachable.
            raise Refusal(f"can't be reached: {error}") from error

    def _zfc(self, *words):
        """The document of a command, whatever its outcome; fails without one."""
        done = self._shell([*self._words, *words])
        lines = (done.get("stdout") or "").splitlines()
        try:
            document = json.loads(lines[0]) if len(lines) == 1 else None
        except ValueError:
            document = None
        if not isinstance(document, dict) or "success" not in document:
            said = (done.get("stderr") or "").strip().splitlines()[-1:] or [f"exit status {done.get('rc')}, no document"]
            raise Refusal(f"{' '.join(words)}: {said[0]}")
        return document

    def _need(self, *words):
        """The same, and fails unless the command has succeeded."""
        document = self._zfc(*words)
        if not document["success"]:
            raise Refusal(f"{' '.join(words)}: {document['message']}")
        return document

    def _identifiers(self, node, field):
        return [item["fields"][field] for item in self._need("-t", node, "list")["list"] or []]

    # Report.

    def _report(self, result):
        adapters, ports, problems = [], [], []

        def lines_of(*words):
            document = self._zfc(*words)
            if not document["success"]:
                problems.append({"command": " ".join(words), "message": document["message"]})
            return _lines(document)

        for adapter in self._identifiers("adapter", "Adapters"):
            information = lines_of("-t", "adapter", "-s", "info", "get", adapter)
            flash = lines_of("-t", "adapter", "-s", "flashinfo", "get", adapter)
            adapters.append({"id": adapter, "information": _values(information), "flash": _values(flash)})
        for port in self._identifiers("port", "Ports"):
            information = lines_of("-t", "port", "-s", "info", "get", port)
            module = lines_of("-t", "port", "-s", "dmi", "get", port)
            entry = {"id": port, "information": _values(information)}
            entry["module"] = _values(module, section="Media Information")
            entry["measurements"] = _measurements(module)
            ports.append(entry)
        result["report"] = {"adapters": adapters, "ports": ports, "problems": problems}

    # Profile.

    def _profile(self, result):
        wanted = _wanted(self._task.args.get("parameters"))
        models = self._task.args.get("models") or []
        result.update(diff=[], ports=[], reboot_required=False)
        for port in self._identifiers("port", "Ports"):
            if models and self._model_of_port(port) not in models:
                continue
            self._apply(port, wanted, result)

    def _model_of_port(self, port):
        return _values(_lines(self._need("-t", "port", "-s", "info", "get", port))).get("Model")

    def _apply(self, port, wanted, result):
        before = self._zfc("-t", "port", "-s", "hbaparams", "get", port)
        if before["message"] == VIRTUAL_PORT:
            return
        before = self._parameters(before, port)
        missing = [name for name in wanted if before.get(PARAMETERS[name], NOT_THERE) == NOT_THERE]
        change = {
            name: value
            for name, value in wanted.items()
            if name not in missing and not _same(before[PARAMETERS[name]], value)
        }
        entry = {"id": port, "changed": sorted(change), "not_supported": missing}
        if missing:
            result.setdefault("warnings", []).append(f"{port}: its adapter has no {', '.join(missing)}")
        if change:
            after = {**before, **{PARAMETERS[name]: value for name, value in change.items()}}
            if not self._task.check_mode:
                entry["reboot_required"] = self._write(port, change, after)
                result["reboot_required"] |= entry["reboot_required"]
            result["changed"] = True
            result["diff"].append(_difference(f"{port} HBA parameters", before, after))
        result["ports"].append(entry)

    def _write(self, port, change, after):
        """Stages and commits the values; says whether a reboot is needed."""
        options = [word for name, value in change.items() for word in (f"--{name}", value)]
        node = ("-t", "port", "-s", "hbaparams")
        staged = self._parameters(self._need(*node, "setFile", port, *options), port)
        # setFile adds to what is staged already. Only this profile may go to the device.
        foreign = [name for name in staged if not _same(staged[name], after.get(name))]
        if foreign:
            raise Refusal(
                f"{port}: not applied. Other staged changes are there ({', '.join(foreign)}): "
                f"commit them with 'hbaparams set', or remove the staged file HBAParams_{port}"
            )
        document = self._need(*node, "set", port)
        now = self._parameters(self._need(*node, "get", port), port)
        wrong = [name for name, value in change.items() if not _same(now.get(PARAMETERS[name]), value)]
        if wrong:
            raise Refusal(f"{port}: written, but reads back otherwise: {', '.join(wrong)}")
        return bool(document["rebootRequired"])

    def _parameters(self, document, port):
        structures = (document.get("fields") or {}).get("HBAParameters") or []
        if not document["success"] or len(structures) != 1:
            raise Refusal(f"{port}: hbaparams: {document['message']}")
        return {name: _word(value) for name, value in structures[0]["fields"].items()}

    # Flash.

    def _flash(self, result):
        images = _images(self._task.args.get("images"))
        result.update(diff=[], adapters=[], reboot_required=[])
        for adapter in self._identifiers("adapter", "Adapters"):
            before = self._information(adapter)
            image = images.get(before.get("Model"))
            if image is None:
                continue
            line = VERSION_LINES[image["kind"]]
            if before.get(line) == image["version"]:
                continue
            self._check_image(image)
            if not self._task.check_mode:
                document = self._need("-t", "adapter", "update", adapter, image["file"], image["kind"])
                version = self._information(adapter).get(line)
                if version != image["version"]:
                    raise Refusal(f"{adapter}: updated, but {line} is {version}, not {image['version']}")
                if document["rebootRequired"]:
                    needed = document["fields"]["Reboot Required"]
                    result["reboot_required"].append("cold" if needed == "Cold Boot Required" else "warm")
            result["changed"] = True
            result["adapters"].append(adapter)
            result["diff"].append(
                _difference(f"{adapter} flash", {line: before.get(line)}, {line: image["version"]})
            )

    def _information(self, adapter):
        return _values(_lines(self._need("-t", "adapter", "-s", "info", "get", adapter)))

    def _check_image(self, image):
        """The image is on the host, and is the one that is meant."""
        done = self._shell(["sha256sum", image["file"]])
        if done.get("rc") != 0:
            raise Refusal(f"{image['file']}: can't be read on the host")
        if done["stdout"].split()[0].lstrip("\\") != image["sha256"]:
            raise Refusal(f"{image['file']}: its SHA-256 is another than expected")


def _lines(document):
    """The lines of a report; none of a failure."""
    found = []
    for value in (document.get("fields") or {}).values():
        for structure in value if isinstance(value, list) else []:
            for report in structure["fields"].values():
                if isinstance(report, dict):
                    found += report.get("lines", [])
    return found


def _values(lines, section=None):
    """The values that have a label and no group, by their label. The first one counts: a device text can only add."""
    values = {}
    for line in lines:
        if line.get("label") and line["group"] is None and line["section"] == section:
            values.setdefault(line["label"], line["value"])
    return values


def _measurements(lines):
    """What a module measures: number, unit and status of each quantity."""
    found = {}
    for line in lines:
        if line.get("section") != "Media Information" or line.get("group") is None:
            continue
        quantity = found.setdefault(line["group"], {})
        if line.get("label") == "Value":
            quantity.update(value=line["number"], unit=line["unit"])
        elif line.get("label") == "Status":
            quantity["status"] = line["value"]
    return found


def _word(value):
    """A value as the program's options take it: YAML reads true and 77 as other types."""
    return str(value).lower() if isinstance(value, bool) else str(value)


def _same(left, right):
    return left is not None and right is not None and left.lower() == right.lower()


def _wanted(parameters):
    if not isinstance(parameters, dict) or not parameters:
        raise Refusal("parameters: expected a map of HBA parameters")
    wanted = {str(name).replace("_", "-"): _word(value) for name, value in parameters.items()}
    unknown = sorted(set(wanted) - set(PARAMETERS))
    if unknown:
        raise Refusal(f"parameters: no such parameter: {', '.join(unknown)}")
    return wanted


def _images(images):
    if not isinstance(images, dict) or not images:
        raise Refusal("images: expected a map of models to images")
    for model, image in images.items():
        lacking = {"file", "kind", "version", "sha256"} - set(image)
        if lacking:
            raise Refusal(f"images: {model}: {', '.join(sorted(lacking))}: expected here, got nothing")
        if image["kind"] not in VERSION_LINES:
            raise Refusal(f"images: {model}: kind: expected one of {', '.join(VERSION_LINES)}")
    return {str(model): {key: str(value) for key, value in image.items()} for model, image in images.items()}


def _difference(title, before, after):
    def text(values):
        return "".join(f"{name}: {value}\n" for name, value in values.items())

    return {
        "before": text(before),
        "after": text(after),
        "before_header": title,
        "after_header": title,
    }
