"""pytest fixtures; `pytest_plugins = ["qeltvapi.pytest_plugin"]` in a conftest.py."""

import pytest

import qeltvapi


@pytest.fixture(scope="session")
def television():
    """A private television for all tests of the session."""
    with qeltvapi.television() as tv:
        yield tv


@pytest.fixture
def fresh_television():
    """A private television with factory settings for one test; not beside `television`."""
    with qeltvapi.television() as tv:
        yield tv
