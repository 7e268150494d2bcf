// Joins: nested loops, kept rows, equal keys.
#include "jet/sql/plan/KeyChains.h"
#include "jet/sql/plan/RowStore.h"
#include "jet/sql/plan/RowStream.h"

namespace tavrel::jet::sql {

namespace {

std::vector<Cell*> CellsOf(const std::vector<Source*>& sources) {
    std::vector<Cell*> cells;
    for (Source* source : sources) {
        const std::vector<Cell*> used = source->UsedCells();
        cells.insert(cells.end(), used.begin(), used.end());
    }
    return cells;
}

class NestedLoop : public RowStream {
  public:
    NestedLoop(Context& context, RowStreamPtr outer, RowStreamPtr inner, NodeList conditions, bool keepOuter,
               std::vector<Source*> innerSources)
        : context_(context),
          outer_(std::move(outer)),
          inner_(std::move(inner)),
          conditions_(std::move(conditions)),
          keepOuter_(keepOuter),
          innerSources_(std::move(innerSources)) {}

    void Open() override {
        nulls_ = RowStore(CellsOf(innerSources_));
        outer_->Open();
        inInner_ = false;
    }

    bool Next() override {
        for (;;) {
            if (!inInner_) {
                if (!outer_->Next()) {
                    return false;
                }
                inner_->Open();
                inInner_ = true;
                matched_ = false;
            }
            if (NextPartner()) {
                return true;
            }
            inInner_ = false;
            if (keepOuter_ && !matched_) {
                nulls_.ShowNulls();
                return true;
            }
        }
    }

  private:
    bool NextPartner() {
        while (inner_->Next()) {
            context_.Visit();
            if (AllTrue(conditions_)) {
                matched_ = true;
                return true;
            }
        }
        return false;
    }

    Context& context_;
    RowStreamPtr outer_;
    RowStreamPtr inner_;
    NodeList conditions_;
    bool keepOuter_;
    std::vector<Source*> innerSources_;
    RowStore nulls_;  ///< only to show Nulls
    bool inInner_ = false;
    bool matched_ = false;
};

class Cache : public RowStream {
  public:
    Cache(RowStreamPtr rows, std::vector<Source*> sources)
        : rows_(std::move(rows)), sources_(std::move(sources)) {}

    void Open() override {
        at_ = 0;
        if (rows_ == nullptr) {
            return;
        }
        store_ = RowStore(CellsOf(sources_));
        for (rows_->Open(); rows_->Next();) {
            store_.Append();
        }
        rows_ = nullptr;
    }
    bool Next() override {
        if (at_ == store_.Size()) {
            return false;
        }
        store_.Show(at_++);
        return true;
    }

  private:
    RowStreamPtr rows_;
    std::vector<Source*> sources_;
    RowStore store_;
    std::size_t at_ = 0;
};

class HashJoinStream : public RowStream {
  public:
    HashJoinStream(Context& context, HashJoin join) : context_(context), join_(std::move(join)) {}

    void Open() override {
        built_ = RowStore(CellsOf(join_.buildSources));
        probeCells_ = RowStore(CellsOf(join_.probeSources));
        Build();
        join_.probe->Open();
        candidate_ = kNone;
        inProbeRow_ = false;
        inLeftovers_ = false;
        leftover_ = 0;
    }

    bool Next() override {
        while (!inLeftovers_) {
            if (!inProbeRow_) {
                if (!join_.probe->Next()) {
                    inLeftovers_ = true;
                    break;
                }
                StartProbeRow();
            }
            if (NextPartner()) {
                return true;
            }
            inProbeRow_ = false;
            if (join_.keepProbe && !matched_) {
                built_.ShowNulls();
                return true;
            }
        }
        return join_.keepBuild && NextLeftover();
    }

  private:
    static constexpr std::uint32_t kNone = KeyChains::kNone;

    void Build() {
        keys_.Clear();
        for (join_.build->Open(); join_.build->Next();) {
            const ByteView key = join_.buildKey.Write();
            const bool joins = !join_.buildKey.HadNull();
            if (!joins && !join_.keepBuild) {
                continue;
            }
            built_.Append();
            if (joins) {
                keys_.Add(key);
            } else {
                keys_.AddWithoutKey();
            }
        }
        partnerFound_.assign(join_.keepBuild ? built_.Size() : 0, false);
    }

    void StartProbeRow() {
        const ByteView key = join_.probeKey.Write();
        candidate_ = join_.probeKey.HadNull() ? kNone : keys_.First(key);
        inProbeRow_ = true;
        matched_ = false;
    }

    bool NextPartner() {
        while (candidate_ != kNone) {
            const std::uint32_t row = candidate_;
            candidate_ = keys_.Behind(row);
            context_.Visit();
            built_.Show(row);
            if (AllTrue(join_.conditions)) {
                matched_ = true;
                if (join_.keepBuild) {
                    partnerFound_[row] = true;
                }
                return true;
            }
        }
        return false;
    }

    bool NextLeftover() {
        while (leftover_ < built_.Size()) {
            const std::size_t row = leftover_++;
            if (!partnerFound_[row]) {
                built_.Show(row);
                probeCells_.ShowNulls();
                return true;
            }
        }
        return false;
    }

    Context& context_;
    HashJoin join_;
    RowStore built_;
    RowStore probeCells_;  ///< only to show Nulls
    KeyChains keys_;
    std::vector<bool> partnerFound_;
    std::uint32_t candidate_ = kNone;
    bool inProbeRow_ = false;
    bool matched_ = false;
    bool inLeftovers_ = false;
    std::size_t leftover_ = 0;
};

}  // namespace

RowStreamPtr MakeNestedLoop(Context& context, RowStreamPtr outer, RowStreamPtr inner, NodeList conditions,
                            bool keepOuter, std::vector<Source*> innerSources) {
    return std::make_unique<NestedLoop>(context, std::move(outer), std::move(inner), std::move(conditions),
                                        keepOuter, std::move(innerSources));
}

RowStreamPtr MakeCache(RowStreamPtr rows, std::vector<Source*> sources) {
    return std::make_unique<Cache>(std::move(rows), std::move(sources));
}

RowStreamPtr MakeHashJoin(Context& context, HashJoin join) {
    return std::make_unique<HashJoinStream>(context, std::move(join));
}

}  // namespace tavrel::jet::sql
