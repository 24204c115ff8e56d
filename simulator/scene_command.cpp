#include "scene_command.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <numeric>
#include <optional>
#include <string_view>

#include "display_name.h"
#include "frame_files.h"
#include "image_writers.h"
#include "output_file.h"
#include "record_files.h"
#include "record_model.h"
#include "scene.h"

namespace camsim {
namespace {

constexpr std::uint32_t kDefaultWidth = 640;
constexpr std::uint32_t kDefaultHeight = 512;

const char kUsage[] = "usage: camsim /Scene <frame.pgm> <truth.pfm> [--width W] [--height H]";

struct SceneRequest {
    std::filesystem::path frame;
    std::filesystem::path truth;
    std::uint32_t width = kDefaultWidth;
    std::uint32_t height = kDefaultHeight;
};

std::optional<SceneRequest> ParseRequest(std::span<const wchar_t* const> arguments) {
    SceneRequest request;
    std::vector<std::filesystem::path> files;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::wstring_view argument = arguments[i];
        if (argument == L"--width" || argument == L"--height") {
            const auto side =
                i + 1 < arguments.size() ? formats::ParseSide(arguments[++i]) : std::nullopt;
            if (!side) {
                return std::nullopt;
            }
            (argument == L"--width" ? request.width : request.height) = *side;
        } else if (argument.starts_with(L"-")) {
            return std::nullopt;
        } else {
            files.emplace_back(argument);
        }
    }
    if (files.size() != 2) {
        return std::nullopt;
    }
    request.frame = files[0];
    request.truth = files[1];
    return request;
}

CommandOutcome Failure(const std::string& message) {
    return {1, "camsim: /Scene: " + message};
}

std::string Summary(const SceneRequest& request, std::span<const float> celsius) {
    const auto [low, high] = std::ranges::minmax_element(celsius);
    const double mean =
        std::accumulate(celsius.begin(), celsius.end(), 0.0) / static_cast<double>(celsius.size());
    char line[256];
    std::snprintf(line, sizeof(line), "Scene %ux%u: min %.3f C, mean %.3f C, max %.3f C",
                  request.width, request.height, *low, mean, *high);
    return line;
}

} // namespace

CommandOutcome RunSceneCommand(std::span<const wchar_t* const> arguments) {
    const auto request = ParseRequest(arguments);
    if (!request) {
        return {2, kUsage};
    }
    const std::filesystem::path samples = formats::SamplesFolder();
    vz::reduce::CQuilloFactoryCalReduceObject record;
    vz::reduce::CObjectParametersReduceObject params;
    std::string error;
    if (!formats::ReadFactoryCal(samples / "factory_cal.txt", record, error) ||
        !formats::ReadObjectParams(samples / "object_params.txt", params, error)) {
        return Failure(error);
    }
    const auto model = ModelFromRecords(record, params);
    const auto conversion = model ? model->Current() : std::nullopt;
    if (!conversion) {
        return Failure("the sample records give no usable calibration");
    }
    const std::vector<float> celsius = SceneTemperatures(request->width, request->height);
    const auto counts = SceneCounts(*conversion, celsius);
    if (!counts) {
        return Failure("the scene lies outside the sample calibration's counts");
    }

    formats::OutputFile frame, truth;
    if (!frame.Open(request->frame, error) || !truth.Open(request->truth, error)) {
        return Failure(error);
    }
    formats::WritePgm(frame.Stream(), request->width, request->height, *counts);
    formats::WritePfm(truth.Stream(), request->width, request->height, celsius);
    if (!frame.Commit(error) || !truth.Commit(error)) {
        return Failure(error);
    }
    return {0, Summary(*request, celsius)};
}

} // namespace camsim
