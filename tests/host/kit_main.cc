// The main function of the tests that register and find: a runtime directory of their own.

#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    // Before anything reads it; short, because it becomes part of a socket's name.
    char directory[] = "/tmp/kit-XXXXXX";
    if (mkdtemp(directory) == nullptr || setenv("QELTV_RUNTIME_DIR", directory, 1) != 0) return 1;
    // Larger messages than a device takes are part of these tests.
    setenv("QELTV_TRANSACTION_BYTES", "0", 1);
    const int result = RUN_ALL_TESTS();
    std::filesystem::remove_all(directory);
    return result;
}
