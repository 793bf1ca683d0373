// The library as a host's plug-in loader sees it: a file named libQetzFlt.so, opened by that
// name, with the plain, undecorated names of its public header.
#include <gtest/gtest.h>

#include <dlfcn.h>

TEST(EntryPoints, loaderFindsTheThreeFunctionsByTheirPlainNames)
{
    void* handle = dlopen(QETZFLT_LIBRARY_PATH, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(handle, nullptr) << dlerror();
    using Name = const char* (*)();
    auto product = reinterpret_cast<Name>(dlsym(handle, "getProductName"));
    auto version = reinterpret_cast<Name>(dlsym(handle, "getVersion"));
    void* convert = dlsym(handle, "convertFrom");
    ASSERT_NE(product, nullptr);
    ASSERT_NE(version, nullptr);
    ASSERT_NE(convert, nullptr);
    EXPECT_STREQ(product(), "Skerrymoor");
    EXPECT_STREQ(version(), "8.6.3");
    EXPECT_EQ(product(), product());
    for (const char* name : {"qetzfltConvert", "qetzfltLastMessageCount", "qetzfltLastMessageText",
                             "qetzfltLastMessageLevel", "qetzfltIsDatabase", "qetzfltInspect", "qetzfltWriteStatistics",
                             "qetzfltMessageCount", "qetzfltMessageText", "qetzfltMessageLevel",
                             "qetzfltClearMessages", "qetzfltWriteImageAsPng", "qetzfltReleaseScene",
                             "qetzfltSetProgress", "qetzfltLastGltfFaceCount"})
        EXPECT_NE(dlsym(handle, name), nullptr) << name;
    dlclose(handle);
}
