"""The Python package against a private television."""

import ast
import asyncio
import os
import pathlib
import re
import subprocess
import sys
import threading

import pytest

import qeltvapi
from qeltvapi import constants, functions, records, stubs
from qeltvapi._description import description

ITEM = "picture.contrast"
EXAMPLES = pathlib.Path(__file__).parents[1] / "examples"
PAGE = pathlib.Path(__file__).parents[2] / "docs" / "python.md"


def batch(first, count):
    return functions.a_qeltvapi_channellist_get_svl_tsl_rec_by_index_ex(
        constants.CHANNEL_LIST_AIR, first, 0, 0, constants.CHANNEL_BROADCAST_ANY, 0, 0, count, 0,
        svl=(records.channel_record_t, count), tsl=(records.multiplex_record_t, count))


def test_values_cross_both_ways(television):
    functions.a_qeltvapi_config_set_value(0, ITEM, 41, 0)
    assert functions.a_qeltvapi_config_get_value(0, ITEM) == 41
    assert functions.a_qeltvapi_config_get_value(selector=0, name=ITEM) == 41


def test_texts_are_cut_to_their_length_and_to_the_buffer(television):
    functions.a_qeltvapi_config_set_str_value("system.time_zone", "Europe/Rome")
    assert functions.a_qeltvapi_config_get_str_value("system.time_zone") == "Europe/Rome"
    assert functions.a_qeltvapi_config_get_str_value("system.time_zone", buf=6) == "Europe"


def test_arrays_are_cut_to_their_count(television):
    modes, count = functions.a_qeltvapi_av_mode_get_all_picture_mode(64, modes=64)
    assert len(modes) == count == functions.a_qeltvapi_av_mode_get_number_picture_mode()
    assert len(set(modes)) == count > 1


def test_records_are_dataclasses(television):
    read = batch(0, 2)
    first, second = read.svl
    assert first.list == constants.CHANNEL_LIST_AIR and first.name and second.number > first.number
    assert read.tsl[0].record_id == first.tsl_record_id
    same = functions.a_qeltvapi_channellist_get_svl_tsl_rec_by_svl_rec_id(
        constants.CHANNEL_LIST_AIR, first.record_id, svl=records.channel_record_t,
        tsl=records.multiplex_record_t)
    assert same.svl == first


def test_records_survive_their_bytes():
    for name in description.records:
        kind = getattr(records, name)
        assert kind.SIZE == description.records[name]["size"], name
        data = bytes(1 + i % 100 for i in range(kind.SIZE))
        again = kind.from_bytes(bytes(kind.from_bytes(data)))
        assert again == kind.from_bytes(bytes(again)), name
        with pytest.raises(ValueError):
            kind.from_bytes(data[:-1])


def test_a_record_refuses_what_does_not_fit():
    channel = records.channel_record_t(name="x" * 1000)
    cut = records.channel_record_t.from_bytes(bytes(channel)).name
    assert 0 < len(cut) < 1000 and set(cut) == {"x"}
    for value in "0", 0.5, None:
        with pytest.raises(TypeError, match="selector"):
            functions.a_qeltvapi_config_get_value(value, ITEM)
    with pytest.raises(OverflowError):
        bytes(records.channel_record_t(list=1 << 16))


def test_a_refusal_and_an_outage_are_different_errors(television):
    with pytest.raises(qeltvapi.Refused) as refused:
        functions.a_qeltvapi_config_get_value(0, "no.such.item")
    assert (refused.value.code, refused.value.name) == (-3, "QELTV_NOT_FOUND")
    television.kill()
    try:
        with pytest.raises(qeltvapi.Unreachable):
            functions.a_qeltvapi_config_get_value(0, ITEM)
    finally:
        television.start()
    assert functions.a_qeltvapi_config_get_value(0, ITEM) == 41


def test_arguments_are_checked_before_the_call(television):
    with pytest.raises(TypeError):
        functions.a_qeltvapi_config_get_value(0)
    with pytest.raises(TypeError):
        functions.a_qeltvapi_config_get_value(0, ITEM, 1, 2)
    with pytest.raises(TypeError):
        functions.a_qeltvapi_config_get_value(0, ITEM, nonsense=1)
    with pytest.raises(OverflowError):
        functions.a_qeltvapi_config_get_value(-1, ITEM)
    with pytest.raises(ValueError):
        functions.a_qeltvapi_config_get_value(0, "picture\0contrast")
    with pytest.raises(AttributeError):
        functions.a_qeltvapi_no_such_function()


def watched(events):
    """Repeats a change until it is notified: the registration goes on by itself."""
    functions.a_qeltvapi_config_add_value_changed_callback(ITEM)
    for value in range(10, 60):
        functions.a_qeltvapi_config_set_value(0, ITEM, value, 0)
        try:
            return value, events.next(0.2)
        except TimeoutError:
            continue
    raise AssertionError("no notification")


def test_notifications_arrive_in_a_loop_a_callback_and_a_coroutine(television):
    with qeltvapi.listen("config") as events:
        value, event = watched(events)
        assert event.kind == "config" and event.values["name"] == ITEM
        assert value in event.values.values()

        heard, came = [], threading.Event()
        remove = qeltvapi.on("config", lambda one: (heard.append(one), came.set()))
        functions.a_qeltvapi_config_set_value(0, ITEM, 70, 0)
        assert came.wait(5)
        remove()
        assert 70 in events.next(5, lambda one: 70 in one.values.values()).values.values()

        async def wait():
            async with qeltvapi.listen("config") as later:
                functions.a_qeltvapi_config_set_value(0, ITEM, 71, 0)
                return await asyncio.wait_for(anext(later), 5)

        assert 71 in asyncio.run(wait()).values.values()
        assert [70] == [70 for one in heard if 70 in one.values.values()]
        assert not [one for one in heard if 71 in one.values.values()]


def test_an_exception_of_a_listener_stays_in_python(television, monkeypatch):
    seen, came = [], threading.Event()
    monkeypatch.setattr(sys, "excepthook", lambda *what: (seen.append(what[0]), came.set()))

    def fails(_):
        raise ZeroDivisionError

    with qeltvapi.listen("config") as events:
        watched(events)
        remove = qeltvapi.on("config", fails)
        functions.a_qeltvapi_config_set_value(0, ITEM, 80, 0)
        assert came.wait(5) and seen[0] is ZeroDivisionError
        remove()
        functions.a_qeltvapi_config_set_value(0, ITEM, 81, 0)
        assert events.next(5, lambda one: 81 in one.values.values())


def test_unknown_kinds_are_refused_with_those_that_there_are():
    with pytest.raises(ValueError, match="scan"):
        qeltvapi.listen("no such kind")
    assert "config" in qeltvapi.kinds()


def test_every_function_has_a_stub_that_parses(tmp_path):
    stubs.main(tmp_path)
    tree = ast.parse((tmp_path / "functions.pyi").read_text())
    found = {node.name for node in tree.body if isinstance(node, ast.FunctionDef)}
    assert found == set(description.functions)
    for name in found:
        assert functions.function(name).address
    ast.parse((tmp_path / "records.pyi").read_text())


def run(*arguments):
    return subprocess.run([sys.executable, *arguments], capture_output=True, text=True,
                          timeout=120, check=False,
                          env={**os.environ, "PYTHONPATH": os.pathsep.join(sys.path)})


def test_the_examples_do_what_they_say(television):
    zapped = run(EXAMPLES / "zap.py")
    assert zapped.returncode == 0, zapped.stderr
    lines = zapped.stdout.splitlines()
    assert len(lines) > 16
    for line in lines:
        assert re.fullmatch(r" *\d+  .{28,}  (plays|fails)  +\d+ ms", line), line
    empty = run(EXAMPLES / "zap.py", "99")
    assert empty.returncode != 0 and "99 has no channels" in empty.stderr
    reminded = run(EXAMPLES / "reminder.py", str(constants.QELTV_SLEEP_WARNING_TIME + 1))
    assert reminded.returncode == 0, reminded.stderr
    # The first one may be missed, as the registration is under way.
    assert [line.split()[1] for line in reminded.stdout.splitlines()[-2:]] == [
        "QELTV_SLEEP_WARNING", "QELTV_SLEEP_CANCELLED"]


def test_each_block_of_the_page_runs_by_itself(television):
    blocks = re.findall(r"```python\n(.*?)```", PAGE.read_text(), re.DOTALL)
    assert len(blocks) > 2
    for block in blocks:
        names = {}
        exec(compile(block, str(PAGE), "exec"), names)
        for name in names:
            if name.startswith("test_"):
                names[name](television)


def test_the_module_calls_from_the_shell(television):
    assert run("-m", "qeltvapi", "a_qeltvapi_config_get_value", "0", ITEM).stdout.strip().isdigit()
    refused = run("-m", "qeltvapi", "a_qeltvapi_config_get_value", "0", "nothing")
    assert refused.returncode == 1 and "QELTV_NOT_FOUND" in refused.stderr
    assert run("-m", "qeltvapi", "a_qeltvapi_nothing").returncode == 2
    assert run("-m", "qeltvapi", "a_qeltvapi_config_get_value").returncode == 2
