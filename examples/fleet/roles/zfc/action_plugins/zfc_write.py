"""Writes JSON files into a folder of the controller, each replaced as a whole and only where it differs.

    zfc_write:
      folder: where
      contents: {name of the file: value, ...}
"""

import json
import os
import tempfile
from pathlib import Path

from ansible.errors import AnsibleActionFail
from ansible.plugins.action import ActionBase


class ActionModule(ActionBase):
    TRANSFERS_FILES = False
    _supports_check_mode = True

    def run(self, tmp=None, task_vars=None):
        result = super().run(tmp, task_vars)
        folder = Path(self._task.args["folder"])
        written = []
        try:
            if not self._task.check_mode:
                folder.mkdir(parents=True, exist_ok=True)
            for name, value in self._task.args["contents"].items():
                text = json.dumps(value, indent=2, sort_keys=True) + "\n"
                if self._replace(folder / Path(name).name, text.encode()):
                    written.append(name)
        except OSError as error:
            raise AnsibleActionFail(f"{folder}: {error.strerror}") from error
        result.update(changed=bool(written), written=written)
        return result

    def _replace(self, path, content):
        """Whether the file had another content."""
        if path.is_file() and path.read_bytes() == content:
            return False
        if self._task.check_mode:
            return True
        handle, name = tempfile.mkstemp(dir=path.parent, prefix=f".{path.name}.")
        try:
            with os.fdopen(handle, "wb") as file:
                file.write(content)
            os.chmod(name, 0o644)
            os.replace(name, path)
        except OSError:
            os.unlink(name)
            raise
        return True
