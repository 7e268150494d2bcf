// A table that a correlated query reads again and again, each time for the rows of one key.
#include "jet/sql/plan/KeyChains.h"
#include "jet/sql/plan/RowStore.h"
#include "jet/sql/plan/RowStream.h"

namespace tavrel::jet::sql {

namespace {

/// The first reading is a plain one: often it stays the only one.  The second keeps all rows by their key,
/// and from then on a reading is a look at the kept ones.
class KeyedScan : public RowStream {
  public:
    KeyedScan(Context& context, Source& source, KeyedRows wanted)
        : context_(context),
          source_(source),
          all_(MakeTableScan(context, source, {})),
          wanted_(std::move(wanted)) {}

    void Open() override {
        if (!opened_) {
            all_->Open();
            opened_ = true;
            return;
        }
        if (!kept_) {
            Keep();
            kept_ = true;
        }
        const ByteView key = wanted_.sought.Write();
        candidate_ = wanted_.sought.HadNull() ? KeyChains::kNone : keys_.First(key);
    }

    bool Next() override {
        while (kept_ ? NextKept() : all_->Next()) {
            if (AllTrue(wanted_.filters)) {
                return true;
            }
        }
        return false;
    }

  private:
    void Keep() {
        rows_ = RowStore(source_.UsedCells());
        for (all_->Open(); all_->Next();) {
            const ByteView key = wanted_.key.Write();
            if (!wanted_.key.HadNull()) {
                keys_.Add(key);
                rows_.Append();
            }
        }
    }

    bool NextKept() {
        if (candidate_ == KeyChains::kNone) {
            return false;
        }
        context_.Visit();
        rows_.Show(candidate_);
        candidate_ = keys_.Behind(candidate_);
        return true;
    }

    Context& context_;
    Source& source_;
    RowStreamPtr all_;
    KeyedRows wanted_;
    RowStore rows_;
    KeyChains keys_;
    std::uint32_t candidate_ = KeyChains::kNone;
    bool opened_ = false;
    bool kept_ = false;
};

}  // namespace

RowStreamPtr MakeKeyedScan(Context& context, Source& source, KeyedRows wanted) {
    return std::make_unique<KeyedScan>(context, source, std::move(wanted));
}

}  // namespace tavrel::jet::sql
