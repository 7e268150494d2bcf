// The disk after the power has failed: what was synced is there; of everything else any part may be, whatever
// came first.
#pragma once

#include <random>
#include <vector>

#include "jet/storage/Disk.h"

namespace tavrel::jet {

class PowerLoss {
  public:
    explicit PowerLoss(std::uint32_t seed) : random_(seed) {}

    /// The disk that was `start`, all of it on the medium, when the power fails after these steps.
    Disk After(const Disk& start, std::span<const DiskStep> steps) {
        File database{start.database, {}};
        std::vector<File> journals;
        std::optional<std::size_t> named;                // by the folder on the medium
        std::vector<std::optional<std::size_t>> naming;  // by what has happened to it since
        if (start.journal) {
            journals.push_back({*start.journal, {}});
            named = 0;
        }
        for (const DiskStep& step : steps) {
            switch (step.call) {
                case DiskCall::Make:
                    naming.emplace_back(journals.size());
                    journals.emplace_back();
                    break;
                case DiskCall::Remove:
                    naming.emplace_back();
                    break;
                case DiskCall::SyncFolder:
                    named = naming.empty() ? named : naming.back();
                    naming.clear();
                    break;
                default:
                    (step.journal ? journals.back() : database).Do(step);
            }
        }
        for (const auto& name : naming) {
            named = Keeps() ? name : named;
        }
        Disk disk;
        disk.database = Left(database);
        if (named) {
            disk.journal = Left(journals[*named]);
        }
        return disk;
    }

    /// Up to `most`, that included.
    std::size_t Draw(std::size_t most) {
        return std::uniform_int_distribution<std::size_t>(0, most)(random_);
    }

  private:
    struct File {
        ByteVector onMedium;
        std::vector<const DiskStep*> waiting;

        void Do(const DiskStep& step) {
            if (step.call != DiskCall::Sync) {
                waiting.push_back(&step);
                return;
            }
            for (const DiskStep* before : waiting) {
                Apply(*before, before->bytes.size());
            }
            waiting.clear();
        }
        void Apply(const DiskStep& step, std::size_t length) {
            if (step.call == DiskCall::Resize) {
                onMedium.resize(step.at);
            } else {
                WriteInto(onMedium, step.at, ByteView(step.bytes).first(length));
            }
        }
    };

    bool Keeps() { return random_() % 2 == 0; }

    ByteVector Left(File& file) {
        for (const DiskStep* step : file.waiting) {
            if (Keeps()) {
                file.Apply(*step, Keeps() ? step->bytes.size() : step->bytes.size() / 2);
            }
        }
        return file.onMedium;
    }

    std::mt19937 random_;
};

/// What a database says, and how many steps had been made when it said so: when the power fails after some
/// steps, the disk must say what it said last, or next.
template <typename Content>
struct History {
    struct Moment {
        std::size_t steps;
        Content content;
    };
    std::vector<Moment> moments;

    bool Allows(std::size_t steps, const Content& found) const {
        std::size_t last = 0;
        while (last + 1 < moments.size() && moments[last + 1].steps <= steps) {
            ++last;
        }
        return found == moments[last].content ||
               (last + 1 < moments.size() && found == moments[last + 1].content);
    }
};

}  // namespace tavrel::jet
