#include "formats/geotiff/write.h"

#include <cmath>

#include "formats/geotiff/cells.h"
#include "formats/geotiff/keys.h"
#include "formats/numbers.h"

namespace formats::geotiff {

namespace {

std::string ascii(std::string_view text) {
    std::string out;
    for (const char each : text) {
        // A character of several bytes is one question mark.
        const auto byte = static_cast<unsigned char>(each);
        if (byte < 0x80) out += byte < ' ' && each != '\n' ? ' ' : each;
        if (byte >= 0xc0) out += '?';
    }
    return out;
}

// For people the names of bands stand in the description, a line each.
std::string descriptionOf(const Raster& raster) {
    std::string text = raster.description;
    for (std::size_t band = 0; raster.bands.size() > 1 && band < raster.bands.size(); ++band) {
        text += "\nBand " + std::to_string(band + 1) + ": " + raster.bands[band].name;
    }
    return ascii(text);
}

std::string escaped(std::string_view text) {
    std::string out;
    for (const char each : text) {
        if (each == '&') {
            out += "&amp;";
        } else if (each == '<') {
            out += "&lt;";
        } else {
            out += static_cast<unsigned char>(each) < ' ' ? ' ' : each;
        }
    }
    return out;
}

// And for programs in the tag that they look for items of a band in.
std::string itemsOf(const Raster& raster) {
    std::string text = "<Metadata>\n";
    for (std::size_t band = 0; band < raster.bands.size(); ++band) {
        text += "  <Item name=\"DESCRIPTION\" sample=\"" + std::to_string(band) +
                "\" role=\"description\">" + escaped(raster.bands[band].name) + "</Item>\n";
    }
    return text + "</Metadata>\n";
}

void setPlace(const Tiff& tiff, const Raster& raster) {
    const double scale[] = {raster.cellSize[0], raster.cellSize[1], 0};
    const double tie[] = {0, 0, 0, raster.place[0], raster.place[1], 0};
    for (const double each : {scale[0], scale[1], tie[3], tie[4]}) {
        if (!std::isfinite(each)) return;
    }
    if (scale[0] <= 0 || scale[1] <= 0) return;
    tiff.set(kPixelScale, static_cast<int>(std::size(scale)), scale);
    tiff.set(kTiePoints, static_cast<int>(std::size(tie)), tie);
}

void setKeys(const Tiff& tiff, const Raster& raster) {
    const Keys keys = keysOf(raster.system, raster.points);
    const std::vector<uint16_t> directory = keys.directory();
    tiff.set(kKeyDirectory, static_cast<int>(directory.size()), directory.data());
    if (!keys.doubles.empty()) {
        tiff.set(kKeyDoubles, static_cast<int>(keys.doubles.size()), keys.doubles.data());
    }
    if (!keys.texts.empty()) tiff.set(kKeyTexts, keys.texts.c_str());
    if (!keys.uncoded.empty() && raster.tell) {
        raster.tell("GeoTIFF has no code for the projection " + keys.uncoded +
                    "; its definition is in the citation, where programs do not look for it.");
    }
}

void setRanges(const Tiff& tiff, const Raster& raster) {
    std::vector<double> lowest;
    std::vector<double> highest;
    for (const Raster::Band& band : raster.bands) {
        if (!band.range) return;
        lowest.push_back((*band.range)[0]);
        highest.push_back((*band.range)[1]);
    }
    tiff.set(TIFFTAG_PERSAMPLE, PERSAMPLE_MULTI);
    tiff.set(TIFFTAG_SMINSAMPLEVALUE, lowest.data());
    tiff.set(TIFFTAG_SMAXSAMPLEVALUE, highest.data());
    tiff.set(TIFFTAG_PERSAMPLE, PERSAMPLE_MERGED);
}

void writeDirectory(const Tiff& tiff, const Raster& raster, const Plan& plan, std::size_t number) {
    const Level& level = plan.levels[number];
    const auto bands = static_cast<int>(raster.bands.size());
    tiff.set(TIFFTAG_SUBFILETYPE, number == 0 ? 0 : FILETYPE_REDUCEDIMAGE);
    tiff.set(TIFFTAG_IMAGEWIDTH, level.columns);
    tiff.set(TIFFTAG_IMAGELENGTH, level.rows);
    tiff.set(TIFFTAG_SAMPLESPERPIXEL, bands);
    tiff.set(TIFFTAG_PLANARCONFIG, bands == 1 ? PLANARCONFIG_CONTIG : PLANARCONFIG_SEPARATE);
    describeTiles(tiff, plan.tile);
    if (bands > 1) {
        const std::vector<uint16_t> extra(static_cast<std::size_t>(bands) - 1,
                                          EXTRASAMPLE_UNSPECIFIED);
        tiff.set(TIFFTAG_EXTRASAMPLES, bands - 1, extra.data());
    }
    if (raster.noData) {
        std::string text;
        appendShortest(text, *raster.noData);
        tiff.set(kNoData, text.c_str());
    }
    if (number == 0) {
        tiff.set(TIFFTAG_IMAGEDESCRIPTION, descriptionOf(raster).c_str());
        if (raster.bands.size() > 1) tiff.set(kItems, itemsOf(raster).c_str());
        setRanges(tiff, raster);
        setPlace(tiff, raster);
        setKeys(tiff, raster);
    }
    tiff.must(TIFFDeferStrileArrayWriting(tiff) == 1);
    tiff.must(TIFFWriteCheck(tiff, 1, "a raster") == 1);  // makes room for the places of tiles
    tiff.must(TIFFWriteDirectory(tiff) == 1);
}

void goTo(const Tiff& tiff, std::size_t level) {
    tiff.must(TIFFSetDirectory(tiff, static_cast<tdir_t>(level)) == 1);
}

}  // namespace

void write(const Raster& raster, const RasterOptions& options, const std::string& path,
           const std::string& target) {
    const Plan plan = planOf(raster, options);
    File file(path, target);
    {
        const Tiff tiff(file, plan.big ? "w8" : "w");
        for (std::size_t level = 0; level < plan.levels.size(); ++level) {
            writeDirectory(tiff, raster, plan, level);
        }
        for (std::size_t level = 0; level < plan.levels.size(); ++level) {
            goTo(tiff, level);
            tiff.must(TIFFForceStrileArrayWriting(tiff) == 1);
        }
        uint32_t number = 0;
        const auto take = [&](std::vector<std::byte> tile) {
            const auto size = static_cast<tmsize_t>(tile.size());
            tiff.must(TIFFWriteRawTile(tiff, number++, tile.data(), size) == size);
        };
        InOrder workers(options.workers);
        if (plan.levels.size() > 1) {
            Scratch scratch(path + ".overviews", target);
            const Overviews overviews(raster, plan, scratch, workers);
            for (std::size_t level = plan.levels.size() - 1; level > 0; --level) {
                goTo(tiff, level);
                number = 0;
                overviews.each(level, take);
                tiff.must(TIFFFlush(tiff) == 1);
            }
        }
        goTo(tiff, 0);
        number = 0;
        for (std::size_t band = 0; band < raster.bands.size(); ++band) {
            TileRows tiles(plan.levels[0], plan.tile, raster.noData, workers, take);
            for (int32_t row = 0; row < raster.rows; ++row) {
                raster.read(band, row, tiles.next());
                tiles.added();
            }
        }
        tiff.must(TIFFFlush(tiff) == 1);
    }
    file.close();
}

}  // namespace formats::geotiff
