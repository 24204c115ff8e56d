#include "batch_conversion.h"

#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <new>
#include <optional>
#include <thread>

#include "display_name.h"
#include "frame_conversion.h"
#include "frame_files.h"
#include "frame_outputs.h"
#include "output_file.h"
#include "progress_bar.h"

namespace convert {
namespace {

bool ReadFrame(const Options& options, const std::filesystem::path& file, formats::Frame& frame,
               std::string& error) {
    if (options.type) {
        return formats::ReadRaw(file, {*options.width, *options.height, *options.type}, frame,
                                error);
    }
    if (!formats::ReadPgm(file, frame, error)) {
        return false;
    }
    if (options.width.value_or(frame.width) != frame.width ||
        options.height.value_or(frame.height) != frame.height) {
        error = formats::DisplayName(file) + ": " + std::to_string(frame.width) + "x" +
                std::to_string(frame.height) + " pixels do not match --width " +
                (options.width ? std::to_string(*options.width) : "(any)") + " --height " +
                (options.height ? std::to_string(*options.height) : "(any)");
        return false;
    }
    return true;
}

// A frame converted and summed up, its outputs written but not yet renamed into place.
struct ConvertedFrame {
    bool ok = false;
    std::string error;
    BatchSummary summary;
    std::vector<formats::OutputFile> outputs;
};

ConvertedFrame ConvertOne(const Options& options, vz::CBroadCal& engine, const PresetSource& source,
                          const std::filesystem::path& file) {
    ConvertedFrame converted;
    formats::Frame frame;
    if (!ReadFrame(options, file, frame, converted.error) ||
        !MatchesFrame(source, frame, file, converted.error)) {
        return converted;
    }
    const auto start = std::chrono::steady_clock::now();
    Temperatures temperatures;
    if (!ConvertFrame(engine, source, frame, options.unit, temperatures)) {
        converted.error = formats::DisplayName(file) +
                          ": the camera server failed to build the temperature tables";
        return converted;
    }
    converted.summary.Add(
        temperatures.values, temperatures.status,
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
            .count());
    converted.ok = PrepareFrameOutputs(options, file, frame.width, frame.height, temperatures,
                                       converted.outputs, converted.error);
    return converted;
}

ConvertedFrame Failed(std::string error) {
    ConvertedFrame frame;
    frame.error = std::move(error);
    return frame;
}

// On a worker thread nothing may escape: what is thrown becomes the frame's error.
ConvertedFrame ConvertOneCaught(const Options& options, vz::CBroadCal& engine,
                                const PresetSource& source, const std::filesystem::path& file) {
    try {
        return ConvertOne(options, engine, source, file);
    } catch (const std::bad_alloc&) {
        return Failed("out of memory");
    } catch (const std::exception& failure) {
        return Failed(failure.what());
    }
}

// Frames handed out to the workers in input order, and their results taken back in that order.
// Workers stay a few frames ahead of the one taken back, so that only those are held in memory.
class FrameQueue {
public:
    FrameQueue(std::size_t count, std::size_t first, std::size_t ahead)
        : mResults(count), mAhead(ahead), mNext(first), mTaken(first) {}

    // The next frame to convert, or nothing when the batch is over or stopped.
    std::optional<std::size_t> Next() {
        std::unique_lock lock(mMutex);
        mChanged.wait(lock, [&] { return mStopped || mNext < mTaken + mAhead; });
        if (mStopped || mNext == mResults.size()) {
            return std::nullopt;
        }
        return mNext++;
    }
    void Put(std::size_t index, ConvertedFrame frame) {
        const std::lock_guard lock(mMutex);
        mResults[index] = std::move(frame);
        mChanged.notify_all();
    }
    // Waits for the frame's result; frames before it have been taken.
    ConvertedFrame Take(std::size_t index) {
        std::unique_lock lock(mMutex);
        mChanged.wait(lock, [&] { return mResults[index].has_value(); });
        ConvertedFrame frame = std::move(*mResults[index]);
        mResults[index].reset();
        mTaken = index + 1;
        mChanged.notify_all();
        return frame;
    }
    void Stop() {
        const std::lock_guard lock(mMutex);
        mStopped = true;
        mChanged.notify_all();
    }

private:
    std::mutex mMutex;
    std::condition_variable mChanged;
    std::vector<std::optional<ConvertedFrame>> mResults;
    std::size_t mAhead;
    std::size_t mNext;
    std::size_t mTaken;
    bool mStopped = false;
};

} // namespace

bool ConvertBatch(const Options& options, unsigned jobs, vz::CBroadCal& engine,
                  const PresetSource& source, const std::vector<std::filesystem::path>& files,
                  BatchSummary& summary, std::string& error) {
    ProgressBar progress(files.size(), !options.quiet);
    const auto finish = [&](ConvertedFrame frame) {
        if (!frame.ok) {
            error = frame.error;
            return false;
        }
        if (!formats::CommitAll(frame.outputs, error)) {
            return false;
        }
        summary.Add(frame.summary);
        return true;
    };
    if (files.empty()) {
        return true;
    }
    progress.Show(0, files[0]);
    if (!finish(ConvertOne(options, engine, source, files[0]))) {
        return false;
    }
    FrameQueue queue(files.size(), 1, 2 * std::size_t{jobs});
    std::vector<std::jthread> workers;
    // Stops the queue before the workers are joined, however this returns; frames converted
    // beyond a failure are dropped with their temporary files.
    const struct StopOnExit {
        FrameQueue& queue;
        ~StopOnExit() { queue.Stop(); }
    } stop{queue};
    for (unsigned j = 0; j < jobs && j + 1 < files.size(); ++j) {
        workers.emplace_back([&] {
            while (const auto index = queue.Next()) {
                queue.Put(*index, ConvertOneCaught(options, engine, source, files[*index]));
            }
        });
    }
    bool ok = true;
    for (std::size_t i = 1; i < files.size() && ok; ++i) {
        progress.Show(i, files[i]);
        ok = finish(queue.Take(i));
    }
    return ok;
}

} // namespace convert
