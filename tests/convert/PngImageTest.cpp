// Texture images as PNG: fltEncodePng and fltWritePng on SGI images the test writes, and the
// entry point qetzfltWriteImageAsPng that tools and exporters call.
#include <gtest/gtest.h>

#include <Inventor/SoDB.h>
#include <png.h>

#include <cstdint>
#include <string>
#include <vector>

#include "QetzFlt/QetzFlt.h"
#include "SgiImage.h"
#include "TestSupport.h"
#include "convert/FltPngImage.h"

namespace {

// A value per pixel and channel that tells rows, columns and channels apart.
uint8_t sample(int x, int y, int channel) { return static_cast<uint8_t>(x * 7 + y * 29 + channel * 60 + 3); }

struct Decoded {
    int width = 0, height = 0, channels = 0;
    std::vector<unsigned char> pixels;  // top row first, as PNG stores them
    const unsigned char* at(int x, int y) const { return &pixels[(static_cast<size_t>(y) * width + x) * channels]; }
};

bool decode(const std::vector<unsigned char>& png, Decoded& out)
{
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_memory(&image, png.data(), png.size())) return false;
    out.width = static_cast<int>(image.width);
    out.height = static_cast<int>(image.height);
    out.channels = static_cast<int>(PNG_IMAGE_PIXEL_CHANNELS(image.format));
    out.pixels.resize(PNG_IMAGE_SIZE(image));
    const bool ok = png_image_finish_read(&image, nullptr, out.pixels.data(), 0, nullptr) != 0;
    png_image_free(&image);
    return ok;
}

class PngImageTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (!SoDB::isInitialized()) SoDB::init();
    }
    ScratchDir dir;
};

}  // namespace

TEST_F(PngImageTest, encodesEveryComponentCountWithTheTopRowFirst)
{
    const int width = 5, height = 3;
    for (const auto& [name, channels] : std::vector<std::pair<const char*, int>>{
             {"grey.int", 1}, {"greyAlpha.inta", 2}, {"colour.rgb", 3}, {"colourAlpha.rgba", 4}}) {
        SCOPED_TRACE(name);
        const std::string image = dir.write(name, sgiImage(width, height, channels, sample));
        std::vector<unsigned char> png;
        int w = 0, h = 0;
        std::string why;
        ASSERT_TRUE(fltEncodePng(image, png, w, h, why)) << why;
        EXPECT_EQ(w, width);
        EXPECT_EQ(h, height);
        Decoded decoded;
        ASSERT_TRUE(decode(png, decoded));
        EXPECT_EQ(decoded.width, width);
        EXPECT_EQ(decoded.height, height);
        EXPECT_EQ(decoded.channels, channels);
        // The PNG's top row is the SGI file's last (rows run bottom up there).
        for (int c = 0; c < channels; ++c) {
            EXPECT_EQ(decoded.at(0, 0)[c], sample(0, height - 1, c)) << "channel " << c;
            EXPECT_EQ(decoded.at(4, 2)[c], sample(4, 0, c)) << "channel " << c;
            EXPECT_EQ(decoded.at(3, 1)[c], sample(3, 1, c)) << "channel " << c;
        }
    }
}

TEST_F(PngImageTest, writesThroughATemporaryNameAndSaysWhyWhenItCannot)
{
    const std::string image = dir.write("brick.rgb", sgiImage(4, 2, 3, sample));
    std::string why;
    ASSERT_TRUE(fltWritePng(image, dir.file("brick.png"), why)) << why;
    std::vector<unsigned char> png;
    int w = 0, h = 0;
    ASSERT_TRUE(fltEncodePng(image, png, w, h, why));
    const std::string file = readFile(dir.file("brick.png"));
    EXPECT_EQ(std::vector<unsigned char>(file.begin(), file.end()), png);
    // Nothing but the picture is left in the folder.
    int entries = 0;
    for (const auto& entry : std::filesystem::directory_iterator(dir.path())) entries += entry.is_regular_file();
    EXPECT_EQ(entries, 2);

    // (A missing image: the entry point's test, whose message carries the reason.)
    const std::string notAnImage = dir.write("text.rgb", "image");
    EXPECT_FALSE(fltWritePng(notAnImage, dir.file("text.png"), why));
    EXPECT_FALSE(why.empty());
    EXPECT_FALSE(std::filesystem::exists(dir.file("text.png")));
    EXPECT_FALSE(fltWritePng(dir.path().string(), dir.file("folder.png"), why));
    EXPECT_EQ(why, "not a regular file");
    EXPECT_FALSE(fltWritePng(image, dir.file("no/such/folder/brick.png"), why));
    EXPECT_NE(why.find("No such file or directory"), std::string::npos) << why;
}

TEST_F(PngImageTest, entryPointAnswersZeroOneOrTwoWithAMessage)
{
    const std::string image = dir.write("roof.rgba", sgiImage(2, 2, 4, sample));
    EXPECT_EQ(qetzfltWriteImageAsPng(image.c_str(), dir.file("roof.png").c_str()), 0);
    EXPECT_EQ(qetzfltLastMessageCount(), 0);
    const std::string written = readFile(dir.file("roof.png"));
    Decoded decoded;
    ASSERT_TRUE(decode(std::vector<unsigned char>(written.begin(), written.end()), decoded));
    EXPECT_EQ(decoded.channels, 4);

    EXPECT_EQ(qetzfltWriteImageAsPng(dir.file("gone.rgb").c_str(), dir.file("gone.png").c_str()), 1);
    ASSERT_EQ(qetzfltLastMessageCount(), 1);
    EXPECT_EQ(std::string(qetzfltLastMessageText(0)),
              "WARNING ! Cannot read the image " + dir.file("gone.rgb") + ": No such file or directory");
    EXPECT_EQ(qetzfltLastMessageLevel(0), 2);
    EXPECT_EQ(qetzfltWriteImageAsPng(nullptr, dir.file("none.png").c_str()), 1);

    EXPECT_EQ(qetzfltWriteImageAsPng(image.c_str(), dir.file("no/folder/roof.png").c_str()), 2);
    ASSERT_EQ(qetzfltLastMessageCount(), 1);
    EXPECT_NE(std::string(qetzfltLastMessageText(0)).find("WARNING ! No PNG written for " + image), std::string::npos);
    EXPECT_EQ(qetzfltWriteImageAsPng(image.c_str(), nullptr), 2);
}
