from qeltvapi import functions


def test_contrast_is_remembered(television):
    functions.a_qeltvapi_config_set_value(0, "picture.contrast", 42, 0)
    television.restart()
    assert functions.a_qeltvapi_config_get_value(0, "picture.contrast") == 42
