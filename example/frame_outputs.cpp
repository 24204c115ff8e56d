#include "frame_outputs.h"

#include <functional>
#include <vector>

#include "batch_inputs.h"
#include "display_name.h"
#include "false_colour.h"
#include "image_writers.h"
#include "png_file.h"

namespace convert {

bool PrepareFrameOutputs(const Options& options, const std::filesystem::path& input,
                         std::uint32_t width, std::uint32_t height, const Temperatures& result,
                         std::vector<formats::OutputFile>& files, std::string& error) {
    const std::vector<float>& values = result.values;
    struct Output {
        bool wanted;
        const wchar_t* suffix;
        // False when the content can't be encoded; the stream's state tells about writing.
        std::function<bool(std::ostream&)> fill;
    };
    const Output outputs[] = {
        {options.pfm, L".pfm",
         [&](std::ostream& out) {
             formats::WritePfm(out, width, height, values);
             return true;
         }},
        {options.csv, L".csv",
         [&](std::ostream& out) {
             formats::WriteCsv(out, width, height, values);
             return true;
         }},
        // maxval 4, the largest status, so that viewers stretch the marks to full contrast.
        {options.status, kStatusSuffix,
         [&](std::ostream& out) {
             formats::WritePgm(out, width, height, result.status, vz::eLUTAbove);
             return true;
         }},
        {options.png, L".png",
         [&](std::ostream& out) {
             const TemperatureRange scale = ColourScale(values, result.status, options.range);
             return WritePng(out, FalseColourPicture(width, height, values, scale, options.unit));
         }},
    };

    const std::filesystem::path folder = options.outFolder.value_or(input.parent_path());
    for (const Output& output : outputs) {
        if (!output.wanted) {
            continue;
        }
        const std::filesystem::path target = folder / (input.stem().native() + output.suffix);
        formats::OutputFile& file = files.emplace_back();
        if (!file.Open(target, error)) {
            return false;
        }
        if (!output.fill(file.Stream())) {
            error = formats::DisplayName(target) + ": can't be encoded";
            return false;
        }
        if (!file.Close(error)) {
            return false;
        }
    }
    return true;
}

} // namespace convert
