pytest_plugins = ["qeltvapi.pytest_plugin"]
