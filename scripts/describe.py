#!/usr/bin/env python3
"""Writes qeltvapi.json, the description of the library and of the reference television's values:

usage: describe.py OUT.json

It is generated from include/, interface/, layouts/, clientwrapper/ and tests/exports.tsv. What is
here can be relied on; keys may be added. Texts are plain, with an empty line between paragraphs;
`doc` is the whole comment, `brief` its first sentence.

{
  "format": 1,
  "functions": [{                  every C function, in the order of the headers
    "name", "header", "brief", "doc",
    "prototype",                   "int a_qeltvapi_cancel_scan(void)"
    "result": {"type", "doc", REFERENCE...},
    "parameters": [PARAMETER],     null for a function that takes anything
    "methods": [{"interface", "method", "ordinal"}],  those that it may call; mostly one, or none
    "results": {"noService", "transportFailure"},  what it returns when no answer comes: a number,
                                   "ends the process", or null without a result; null for a
                                   function that makes no transaction
    "registers": CALLBACK,         the callback type that it registers, else null
    "requestsRegistration": bool   it asks the service to register the callback object
  }],
  "callbacks": [{                  types of functions that an application registers
    "name", "header", "brief", "doc", "result": {"type", "doc"}, "parameters": [PARAMETER]
  }],
  "notifications": [{              one for each callback type, in that order
    "name",                        short name, "scan"
    "callback",                    the callback type
    "methods",                     methods of IQelTvApiCallback that end in it
    "registeredBy",                C functions that register it; none: no function does
    "answered": bool,              the television uses the function's answer
    "selector",                    parameter that holds the kind of event ("type", "cond"), or null
    "events": ENUMERATION,         of the selector's values, or null
    "constants": [NAME],           the selector's values where they are no enumeration of their own
    "fields": [FIELD]              the values arg1, arg2, ... in their order; see FIELD
  }],
  "records": [{                    of include/ and layouts/
    "name", "header", "brief", "doc",
    "layout",                      the record with fields that stands for one of mere bytes, or null
    "size", "size32",              bytes in 64-bit and in 32-bit processes
    "fields": [{"name",            alternatives of a union: "value.number", "value.pointer"
                "type",            without dimensions: "uint8_t" of rows[25][40], whose
                "count",           number of elements is 1000
                "dimensions",      [25, 40]; [] for a single value
                "offset", "offset32", "size", "size32", "doc", REFERENCE...}]
  }],
  "enumerations": [{               enums, and runs of constants below one comment
    "name",                        of a run: what the names begin with, "CHANNEL_FILTER_", or the
                                   word before the first colon of its comment
    "header", "doc", "bits": bool, "values": [{"name", "value", "doc", "fields": [FIELD] or null}]
  }],
  "constants": [{"name", "value", "header", "doc"}],         the other constants; value int or str
  "interfaces": [{                 of the service, with its methods by transaction order
    "name", "brief", "doc",
    "methods": [{"name", "ordinal", "brief", "doc", "functions": [NAME],
                 "parameters": [{"name", "type", "doc"}], "results": [{"name", "type", "doc"}]}]
  }],
  "families": [{                   a header with functions
    "header", "brief", "doc", "logTag"
  }]
}

PARAMETER: {"name", "type",        "const int32_t*"
  "direction",                     "in", "out" or "in,out"
  "doc", REFERENCE...}
REFERENCE, keys of parameters, results and fields: what their comment names
  "enumeration": NAME or null,     the values are those of the enumeration
  "bits": bool,                    the value is a combination of them
  "constants": [NAME],             single constants that the comment names
  "record": NAME or null,          the data has the form of the record
  "unit": "kHz" or null
FIELD: {"name", "signed": bool, "enumeration": NAME or null}
  One for each of arg1, arg2, ...; a value without meaning has the name "". A signed value is to be
  sign-extended from the callback's type. The fields of an event are those of its enumerator if they
  are not null; otherwise those of the notification.

In comments "@values" gives names to the values of a notification, separated by commas: NAME, or
NAME:ENUMERATION, or NAME:signed; "-" is a value without meaning. It stands in the comment of an
enumerator (for that event), of a callback type (for all others), or of an enumeration (for all
others of every notification that uses it). Parameters refer to what their comment names.
"""
import collections
import functools
import itertools
import json
import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
import headers
import results
from headers import ROOT

FORMAT = 1

# (size, alignment); pointers and what is as wide as one in 64-bit and 32-bit processes.
SIZES = {"char": 1, "bool": 1, "int": 4, "int8_t": 1, "uint8_t": 1, "int16_t": 2, "uint16_t": 2,
         "int32_t": 4, "uint32_t": 4, "int64_t": 8, "uint64_t": 8}
# An integer type whose alignment is its own.
ALIGNED = {"qeltvapi_packed_u64_t": (8, 4)}

# Short names of notifications that do not follow from the type's name.
NOTIFICATION_NAMES = {
    "qeltvapi_svctx_listener_t": "svctx",
    "qeltvapi_svctx_select_listener_t": "svctx_select",
    "qeltvapi_src_detect_nfy_cb_t": "src_detect",
    "qeltvapi_ginga_app_cb_t": "ginga",
    "qeltvapi_rating_op_vchip_callback_cb_t": "rating",
    "qeltvapi_channel_logo_data_update_callback_cb_t": "ch_logo",
    "qeltvapi_iom_notify_cb_t": "uart",
    "qeltvapi_audio_update_cb_t": "audio",
    "qeltvapi_ginga_update_cb_t": "ginga_update",
    "qeltvapi_mheg5_launch_hbbtv_nfy_cb_t": "mheg5_hbbtv",
    "qeltvapi_mheg5_is_mime_type_support_cb_t": "mheg5_mime_type",
    "qeltvapi_video_common_nfy_fct_t": "videoinfo",
}
# Those whose answer crosses.
ANSWERED = {"qeltvapi_highlevel_query_cb_t", "qeltvapi_mheg5_is_mime_type_support_cb_t"}
# Methods of the callback interface that do not name their slot in one statement.
CALLBACK_METHODS = re.compile(
    r"^Return<void> QelTvApiCallbackImpl::(\w+)\((.*?)^\}", re.S | re.M)
UNIT = re.compile(r"\bin (GHz|MHz|kHz|Hz|seconds|milliseconds|ms|minutes|hours|days|years|percent|"
                  r"bytes|KiB|pixels|characters|kbit/s|degrees|thousandths|tenths of a degree)\b")


class Description:
    def __init__(self):
        self.known = {}
        public = headers.families(ROOT / "include")
        self.sources = [(path, path.name, path.read_text())
                        for path in [*public, *sorted((ROOT / "layouts").glob("*.h"))]]
        self.public = self.sources[:len(public)]
        self.enumerations = self.read_enumerations()
        self.library = results.Library(self.known)
        self.names = {one["name"]: one for one in self.enumerations}
        self.record_names = {record.name for _, _, text in self.sources
                             for record in headers.record_types(text)}
        self.callback_names = {one.name for _, _, text in self.public
                               for one in headers.callbacks(text)}

    def read_enumerations(self):
        found, self.constants = [], []
        for path, name, text in self.sources:
            header = name if path.parent.name == "include" else f"layouts/{name}"
            all_of_file = list(headers.enumerations(text))
            for one in all_of_file:
                self.known.update({value.name: value.value for value in one.values})
            for one in [*all_of_file, *headers.constants(text, self.known)]:
                values = []
                for value in one.values:
                    about = headers.documentation(value.comment)
                    values.append({"name": value.name, "value": value.value, "doc": about.text,
                                   "fields": about.values})
                about = headers.documentation(one.comment)
                if one.name:
                    found.append({"name": one.name, "header": header, "doc": about.text,
                                  "bits": bool(re.search(r"\bbits\b", about.text)),
                                  "values": values, "fields": about.values})
                else:
                    self.constants += [{"name": value["name"], "value": value["value"],
                                        "header": header, "doc": value["doc"]} for value in values]
        doubled = [name for name, count in collections.Counter(one["name"] for one in found).items()
                   if count > 1]
        if doubled:
            raise SystemExit(f"enumerations of one name: {doubled}")
        return found

    def reference(self, doc):
        """What a comment says of the values of a parameter or field."""
        enumeration, bits, named, record = None, False, [], None
        for match in re.finditer(r"\b[A-Za-z]\w+", doc):
            word = match[0]
            if word in self.names:
                if enumeration is None:
                    enumeration = word
                    bits = bool(re.match(r" (?:bits|mask)\b", doc[match.end():]))
            elif word in self.record_names:
                record = record or word
            elif word in self.known:
                named.append(word)
        unit = UNIT.search(doc)
        return {"enumeration": enumeration, "bits": bits, "constants": named, "record": record,
                "unit": unit[1] if unit else None}

    def parameters(self, listed, about):
        if listed is None:
            return None
        out = []
        for kind, name in listed:
            direction, doc = about.parameters.get(name, ("", ""))
            out.append({"name": name, "type": kind, "direction": direction or "in", "doc": doc,
                        **self.reference(doc)})
        return out

    def fields(self, names, count):
        """FIELDs from what @values lists, filled up to the number of values."""
        if names is None:
            return None
        out = []
        for name in (names + ["-"] * count)[:max(count, len(names))]:
            name, _, kind = name.partition(":")
            if kind and kind != "signed" and kind not in self.names:
                raise SystemExit(f"@values {name}:{kind}: there is no enumeration {kind}")
            enumeration = self.names[kind] if kind and kind != "signed" else None
            out.append({"name": "" if name == "-" else name,
                        "signed": kind == "signed" or enumeration is not None and any(
                            one["value"] < 0 for one in enumeration["values"]),
                        "enumeration": enumeration["name"] if enumeration else None})
        if len(out) != count:
            raise SystemExit(f"@values {', '.join(names)}: more than the {count} values that cross")
        return out

    def functions(self):
        out = []
        for path, header, text in self.public:
            source = self.library.source(path.stem)
            for function in headers.functions(text):
                about = headers.documentation(function.comment)
                shown = "..." if function.parameters is None else ", ".join(
                    f"{kind} {name}" for kind, name in function.parameters) or "void"
                out.append({
                    "name": function.name, "header": header,
                    "brief": headers.first_sentence(about.text), "doc": about.text,
                    "prototype": f"{function.result} {function.name}({shown})",
                    "result": {"type": function.result, "doc": about.result,
                               **self.reference(about.result)},
                    "parameters": self.parameters(function.parameters, about),
                    "methods": [
                        {"interface": row["interface"], "ordinal": int(row["ordinal"]),
                         "method": self.methods(row["interface"])[int(row["ordinal"])]}
                        for row in headers.exports()[function.name] if row["interface"] != "-"],
                    "results": self.results(function, path.stem),
                    "registers": next((kind for kind, _ in function.parameters or []
                                       if kind in self.callback_names), None),
                    "requestsRegistration":
                        "registerCallbackHandler()" in source.whole(function.name)})
        return out

    def results(self, function, stem):
        found = self.library.results(stem, function.name, function.result)
        if all(row["interface"] == "-" for row in headers.exports()[function.name]):
            return None
        if found is None and function.result != "void":
            raise SystemExit(f"{stem}.cpp: no family constant in {function.name}()")
        return dict(zip(("noService", "transportFailure"), found or (None, None)))

    @staticmethod
    @functools.lru_cache
    def methods(interface):
        return headers.hal_methods(ROOT / f"interface/qeltvapi/1.0/{interface}.hal")

    def callbacks(self):
        out = []
        for _, header, text in self.public:
            for one in headers.callbacks(text):
                about = headers.documentation(one.comment)
                out.append({"name": one.name, "header": header,
                            "brief": headers.first_sentence(about.text), "doc": about.text,
                            "result": {"type": one.result, "doc": about.result},
                            "parameters": self.parameters(one.parameters, about),
                            "values": about.values})
        return out

    def notifications(self, callbacks, functions):
        source = (ROOT / "clientwrapper/QelTvApiCallbackImpl.cpp").read_text()
        slots = dict(re.findall(r"NotificationSlot<(\w+)>\s+(\w+);",
                                (ROOT / "clientwrapper/QelTvApiCallbackImpl.h").read_text()))
        methods = {}
        for name, body in CALLBACK_METHODS.findall(source):
            slot = "pf_ci_cb" if "forwardCi(" in body else \
                next((slot for slot in slots.values() if re.search(rf"\b{slot}\b", body)), None)
            methods.setdefault(slot, []).append(name)
        out = []
        for one in callbacks:
            name = NOTIFICATION_NAMES.get(one["name"]) or re.sub(
                r"^qeltvapi_|(_update)?(_callback|_msg|_nfy|_notify)*(_cb|_fct)_t$", "",
                one["name"])
            values = [p for p in one["parameters"] if re.fullmatch(r"arg\d", p["name"])]
            selector = next((p for p in one["parameters"] if p["name"] in ("type", "cond")), None)
            events = self.names.get(selector["enumeration"]) if selector else None
            named = one.pop("values")
            fields = self.fields(named or (events["fields"] if events else None), len(values)) or [
                {"name": p["name"], "signed": p["type"].startswith("int"),
                 "enumeration": p["enumeration"]} for p in values]
            allowed = selector["constants"] if selector else []
            for value in (value for each in self.enumerations for value in each["values"]
                          if each is events or value["name"] in allowed):
                if value["fields"] is not None and not isinstance(value["fields"][0], dict):
                    value["fields"] = self.fields(value["fields"], len(values))
            out.append({
                "name": name, "callback": one["name"], "methods": methods[slots[one["name"]]],
                "registeredBy": [f["name"] for f in functions if f["registers"] == one["name"]],
                "answered": one["name"] in ANSWERED,
                "selector": selector["name"] if selector else None,
                "events": events["name"] if events else None, "constants": allowed,
                "fields": fields})
        return out

    def records(self):
        """Records with the natural layout of both ABIs."""
        layouts, out = {}, []

        def form(kind, pointer):
            """Size and alignment of a type."""
            if kind.endswith("*") or kind in self.callback_names:
                return pointer, pointer
            if kind in ("uintptr_t", "size_t"):
                return pointer, pointer
            if kind in ALIGNED:
                return ALIGNED[kind]
            if kind in SIZES:
                return SIZES[kind], SIZES[kind]
            return layouts[kind, pointer]

        for path, name, text in self.sources:
            header = name if path.parent.name == "include" else f"layouts/{name}"
            for record in headers.record_types(text):
                about = headers.documentation(record.comment)
                entry = {"name": record.name, "header": header,
                         "brief": headers.first_sentence(about.text), "doc": about.text,
                         "layout": self.reference(about.text)["record"]}
                fields = []
                for field in record.fields:
                    doc = headers.documentation(field.comment).text
                    dimensions = [headers.value_of(one, self.known) for one in field.dimensions]
                    count = 1
                    for one in dimensions:
                        count *= one
                    fields.append({"name": field.name, "type": field.type, "count": count,
                                   "dimensions": dimensions, "doc": doc, **self.reference(doc)})
                for pointer, suffix in ((8, ""), (4, "32")):
                    end, widest = 0, 1
                    for _, group in itertools.groupby(fields, lambda f: f["name"].split(".")[0]):
                        group = list(group)
                        forms = [form(field["type"], pointer) for field in group]
                        alignment = max(one[1] for one in forms)
                        start = -(-end // alignment) * alignment
                        for field, (size, _) in zip(group, forms):
                            field["offset" + suffix] = start
                            field["size" + suffix] = size * field["count"]
                            end = max(end, start + size * field["count"])
                        widest = max(widest, alignment)
                    entry["size" + suffix] = -(-end // widest) * widest
                    layouts[record.name, pointer] = entry["size" + suffix], widest
                out.append({**entry, "fields": fields})
        return out

    def interfaces(self, functions):
        callers = {}
        for function in functions:
            for method in function["methods"]:
                callers.setdefault((method["interface"], method["method"]), []).append(
                    function["name"])
        out = []
        for path in sorted((ROOT / "interface/qeltvapi/1.0").glob("I*.hal")):
            text = path.read_text()
            head = re.search(headers.COMMENT + r"\s*interface " + path.stem, text, re.S)
            about = headers.documentation(head[1] if head else "")
            methods = []
            for ordinal, method in enumerate(headers.hal_interface(path)):
                comment = method.comment
                said = headers.documentation(re.sub(r"@return (\w+)", r"@param \1", comment))
                methods.append({
                    "name": method.name, "ordinal": ordinal,
                    "brief": headers.first_sentence(said.text), "doc": said.text,
                    "functions": callers.get((path.stem, method.name), []),
                    **{key: [{"name": name, "type": kind,
                              "doc": said.parameters.get(name, ("", ""))[1]}
                             for kind, name in listed]
                       for key, listed in (("parameters", method.parameters),
                                           ("results", method.results))}})
            if [m["name"] for m in methods] != headers.hal_methods(path):
                raise SystemExit(f"{path.name}: a method has no comment")
            out.append({"name": path.stem, "brief": headers.first_sentence(about.text),
                        "doc": about.text, "methods": methods})
        return out

    def families(self, functions):
        used = {function["header"] for function in functions}
        out = []
        for path, header, text in self.public:
            if header not in used:
                continue
            source = ROOT / "clientwrapper" / (path.stem + ".cpp")
            tag = re.search(r'"(\([a-zA-Z0-9_]+\)\(client\))"',
                            source.read_text() if source.exists() else "")
            about = headers.one_line(headers.plain(headers.file_comment(text)))
            out.append({"header": header, "brief": headers.first_sentence(about), "doc": about,
                        "logTag": tag[1] if tag else None})
        return out

    def all(self):
        functions = self.functions()
        callbacks = self.callbacks()
        notifications = self.notifications(callbacks, functions)
        for one in self.enumerations:
            one.pop("fields")
            for value in one["values"]:
                if value["fields"] is not None and not isinstance(value["fields"][0], dict):
                    raise SystemExit(f"{value['name']}: @values, and no notification uses it")
        return {"format": FORMAT, "functions": functions, "callbacks": callbacks,
                "notifications": notifications, "records": self.records(),
                "enumerations": self.enumerations, "constants": self.constants,
                "interfaces": self.interfaces(functions), "families": self.families(functions)}


def describe():
    """The description as a dict, for other scripts."""
    return Description().all()


def main():
    out = pathlib.Path(sys.argv[1])
    out.parent.mkdir(parents=True, exist_ok=True)
    text = json.dumps(describe(), indent=1, ensure_ascii=False) + "\n"
    # Nothing is built again for a description that stays the same.
    if not out.exists() or out.read_text() != text:
        out.write_text(text)


if __name__ == "__main__":
    main()
