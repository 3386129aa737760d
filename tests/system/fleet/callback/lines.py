"""Writes each task's result as a line of JSON to the file that RESULTS names."""

import json
import os

from ansible.plugins.callback import CallbackBase

DOCUMENTATION = """
name: lines
type: aggregate
short_description: results as lines of JSON
description: Writes each task's result as a line of JSON.
"""


class CallbackModule(CallbackBase):
    CALLBACK_VERSION = 2.0
    CALLBACK_TYPE = "aggregate"
    CALLBACK_NAME = "lines"

    def _note(self, how, result):
        with open(os.environ["RESULTS"], "a", encoding="utf-8") as results:
            results.write(json.dumps({"how": how, "host": result._host.get_name(),
                                      "task": result.task_name, "result": result._result},
                                     default=str) + "\n")

    def v2_runner_on_ok(self, result):
        self._note("ok", result)

    def v2_runner_on_failed(self, result, ignore_errors=False):
        self._note("failed", result)

    def v2_runner_on_unreachable(self, result):
        self._note("unreachable", result)

    def v2_runner_on_skipped(self, result):
        self._note("skipped", result)
