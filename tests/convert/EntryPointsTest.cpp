// The library as a host's plug-in loader sees it: a file named libQetzFlt.so, opened by that
// name, with the plain, undecorated names of its public header.
#include <gtest/gtest.h>

#include <dlfcn.h>

TEST(EntryPoints, loaderFindsTheThreeFunctionsByTheirPlainNames)
{
    void* handle = dlopen(QETZFLT_LIBRARY_PATH, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(handle, nullptr) << dlerror();
    for (const char* name : {"getProductName", "getVersion", "convertFrom", "qetzfltConvert", "qetzfltLastMessageCount", "qetzfltLastMessageText",
                             "qetzfltLastMessageLevel", "qetzfltIsDatabase", "qetzfltInspect", "qetzfltWriteStatistics",
                             "qetzfltMessageCount", "qetzfltMessageText", "qetzfltMessageLevel",
                             "qetzfltClearMessages", "qetzfltWriteImageAsPng", "qetzfltReleaseScene",
                             "qetzfltSetProgress", "qetzfltLastGltfFaceCount"})
        ASSERT_NE(dlsym(handle, name), nullptr) << name;
    using Name = const char* (*)();
    EXPECT_STREQ(reinterpret_cast<Name>(dlsym(handle, "getProductName"))(), "Skerrymoor");
    EXPECT_STREQ(reinterpret_cast<Name>(dlsym(handle, "getVersion"))(), "8.6.3");
    dlclose(handle);
}
