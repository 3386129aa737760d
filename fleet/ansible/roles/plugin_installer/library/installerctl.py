#!/usr/bin/python
"""Brings a machine to a state with the installerctl of a product's bundle."""

import json
import os

from ansible.module_utils.basic import AnsibleModule

DOCUMENTATION = r"""
module: installerctl
short_description: Installs, verifies or removes the product of an installer's bundle
description:
  - Runs C(installerctl) of a bundle that lies on the machine, and takes its result as the task's.
  - In check mode it only plans. The difference is the plan's.
options:
  bundle:
    description: The bundle's folder on the machine.
    type: path
    required: true
  state:
    description: What is to hold afterwards. C(verified) changes nothing and fails if something differs.
    choices: [present, absent, verified]
    default: present
    type: str
  users:
    description: For these users' homes, settings and hosts. By default the user who runs the task.
    type: list
    elements: str
    default: []
  all_users:
    description: For the account of every person.
    type: bool
    default: false
  target:
    description: The root folder of another disk.
    type: path
  require_host:
    description: Fail if no host is found.
    type: bool
    default: false
  allow_downgrade:
    description: Install an older version over a newer one.
    type: bool
    default: false
  keep_user_files:
    description: Keep what users put into folders that are replaced.
    type: bool
    default: false
  wait:
    description: Seconds to wait for another run and for hosts to end.
    type: int
    default: 0
"""

EXAMPLES = r"""
- installerctl:
    bundle: /var/cache/plugin-installer/2.0.1/Quarrytone Tonewright 2 Installer.app
    all_users: true
    wait: 600
"""

RETURN = r"""
result:
  description: The JSON object of installerctl.
  type: dict
  returned: always
status:
  description: The exit status of installerctl. The name is not rc, which would make a failure of 3.
  type: int
  returned: always
"""

ARGUMENTS = {
    "bundle": {"type": "path", "required": True},
    "state": {"choices": ["present", "absent", "verified"], "default": "present"},
    "users": {"type": "list", "elements": "str", "default": []},
    "all_users": {"type": "bool", "default": False},
    "target": {"type": "path"},
    "require_host": {"type": "bool", "default": False},
    "allow_downgrade": {"type": "bool", "default": False},
    "keep_user_files": {"type": "bool", "default": False},
    "wait": {"type": "int", "default": 0},
}

DONE, DIFFERENCES, NOT_INSTALLED = 0, 3, 8


def command(parameters, check_mode):
    """The verb with its options."""
    state = parameters["state"]
    waits = ["--wait", str(parameters["wait"])]
    if state == "verified":
        words = ["verify"]
    elif state == "absent":
        words = ["remove", *waits, *(["--dry-run"] if check_mode else [])]
    elif check_mode:
        words = ["plan"]
    else:
        flags = [f"--{name.replace('_', '-')}"
                 for name in ("require_host", "allow_downgrade", "keep_user_files")
                 if parameters[name]]
        words = ["install", *waits, *flags]
    for user in parameters["users"]:
        words += ["--user", user]
    if parameters["all_users"]:
        words.append("--all-users")
    if parameters["target"]:
        words += ["--target", parameters["target"]]
    return [*words, "--json"]


def difference(result):
    """What changes, as a list before and after."""
    before, after = [], []
    for item in result["items"]:
        action = item["action"]
        if action in ("replace", "remove"):
            before.append(item["destination"])
        if action in ("new", "replace"):
            after.append(item["destination"])
    return {"before": "".join(f"{path}\n" for path in before),
            "after": "".join(f"{path}{' (new contents)' if path in before else ''}\n" for path in after)}


def reasons(result):
    """Why it failed, item by item."""
    lines = [f"{note['path']}: {note['reason']}" for note in result["failed"]]
    for item in result["items"]:
        if item["result"] not in ("changed", "missing"):
            continue
        notes = [f"{note['path']}: {note['reason']}" for note in item["differences"]]
        lines += notes or [f"{item['destination']}: is {item['result']}"]
    return lines


def is_success(state, status, check_mode):
    if status == DONE:
        return True
    if state == "absent":
        # What somebody has changed stays, and is told.
        return status in (DIFFERENCES, NOT_INSTALLED)
    return state == "present" and check_mode and status == DIFFERENCES


def main():
    module = AnsibleModule(argument_spec=ARGUMENTS, supports_check_mode=True)
    parameters = module.params
    program = os.path.join(parameters["bundle"], "Contents/MacOS/installerctl")
    if module.check_mode and not os.path.exists(program):
        module.exit_json(changed=parameters["state"] == "present", result={},
                         msg="The bundle is not there yet")
    status, output, messages = module.run_command(
        [program, *command(parameters, module.check_mode)])
    try:
        result = json.loads(output)
    except ValueError:
        module.fail_json(msg=f"installerctl ended with {status}: {messages.strip()}", status=status)
    answer = {"changed": result["changed"], "result": result, "status": status,
              "diff": difference(result), "msg": result["summary"]}
    if not is_success(parameters["state"], status, module.check_mode):
        answer["msg"] = "; ".join([result["summary"], *reasons(result)])
        module.fail_json(**answer)
    for note in result["kept"]:
        module.warn(f"{note['path']} is kept: {note['reason']}")
    module.exit_json(**answer)


if __name__ == "__main__":
    main()
