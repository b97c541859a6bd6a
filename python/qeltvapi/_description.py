"""The generated description of functions, records, notifications and enumerators."""

import json
import os
import pathlib

HERE = pathlib.Path(__file__).resolve().parent


def candidates(variable, *relative):
    """Paths that a variable names, or below each directory above this package."""
    if variable in os.environ:
        return [pathlib.Path(os.environ[variable])]
    return [above / path for above in HERE.parents for path in relative]


def find(variable, what, *relative):
    paths = candidates(variable, *relative)
    for path in paths:
        if path.exists():
            return path
    raise ImportError(f"{what} is not there; {variable} names it (looked for {paths[0]} and below "
                      "the directories above it)")


def load():
    # An installed package, then a build tree beside the sources.
    path = find("QELTVAPI_DESCRIPTION", "qeltvapi.json",
                "share/qeltvapi/qeltvapi.json", "build/host/qeltvapi.json")
    with open(path, encoding="utf-8") as file:
        return json.load(file)


class Description:
    def __init__(self, data):
        self.data = data
        self.functions = {one["name"]: one for one in data["functions"]}
        self.records = {one["name"]: one for one in data["records"]}
        self.callbacks = {one["name"]: one for one in data["callbacks"]}
        self.notifications = {one["name"]: one for one in data["notifications"]}
        self.enumerations = {one["name"]: one for one in data["enumerations"]}
        self.constants = {one["name"]: one["value"] for one in data["constants"]}
        for enumeration in data["enumerations"]:
            for one in enumeration["values"]:
                self.constants[one["name"]] = one["value"]
        self.codes = {one["value"]: one for one in data["constants"] + [
            value for enumeration in data["enumerations"]
            if enumeration["header"] == "layouts/codes.h" for value in enumeration["values"]]
            if one["name"].startswith("QELTV_") and isinstance(one["value"], int)
            and one.get("header", "layouts/codes.h") == "layouts/codes.h"}


description = Description(load())
