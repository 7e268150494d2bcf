// Rows of single sources, filters.
#include <utility>

#include "jet/sql/plan/RowStream.h"

namespace tavrel::jet::sql {

namespace {

class SingleRow : public RowStream {
  public:
    void Open() override { given_ = false; }
    bool Next() override { return !std::exchange(given_, true); }

  private:
    bool given_ = false;
};

class TableScan : public RowStream {
  public:
    TableScan(Context& context, Source& source, NodeList filters)
        : context_(context), source_(source), filters_(std::move(filters)) {}

    void Open() override {
        columns_ = source_.UsedColumns();
        reader_ = source_.Table()->Scan(columns_);
    }
    bool Next() override {
        while (reader_->Next()) {
            context_.Visit();
            source_.Moved(*reader_);
            if (AllTrue(filters_)) {
                return true;
            }
        }
        return false;
    }

  private:
    Context& context_;
    Source& source_;
    NodeList filters_;
    std::vector<std::size_t> columns_;
    std::unique_ptr<RowReader> reader_;
};

/// A query in a FROM clause.
class QueryScan : public RowStream {
  public:
    QueryScan(Context& context, Source& source, NodeList filters)
        : context_(context), source_(source), filters_(std::move(filters)) {}

    void Open() override {
        columns_ = source_.UsedColumns();
        source_.Query()->Open();
    }
    bool Next() override {
        QueryPlan& query = *source_.Query();
        while (query.Next()) {
            context_.Visit();
            for (const std::size_t column : columns_) {
                source_.CellOf(column).PointTo(query.Output(column));
            }
            if (AllTrue(filters_)) {
                return true;
            }
        }
        return false;
    }

  private:
    Context& context_;
    Source& source_;
    NodeList filters_;
    std::vector<std::size_t> columns_;
};

class Filter : public RowStream {
  public:
    Filter(RowStreamPtr rows, NodeList filters) : rows_(std::move(rows)), filters_(std::move(filters)) {}
    void Open() override { rows_->Open(); }
    bool Next() override {
        while (rows_->Next()) {
            if (AllTrue(filters_)) {
                return true;
            }
        }
        return false;
    }

  private:
    RowStreamPtr rows_;
    NodeList filters_;
};

class Gate : public RowStream {
  public:
    Gate(RowStreamPtr rows, NodeList conditions)
        : rows_(std::move(rows)), conditions_(std::move(conditions)) {}
    void Open() override {
        open_ = AllTrue(conditions_);
        if (open_) {
            rows_->Open();
        }
    }
    bool Next() override { return open_ && rows_->Next(); }

  private:
    RowStreamPtr rows_;
    NodeList conditions_;
    bool open_ = false;
};

}  // namespace

RowStreamPtr MakeSingleRow() {
    return std::make_unique<SingleRow>();
}

RowStreamPtr MakeTableScan(Context& context, Source& source, NodeList filters) {
    return std::make_unique<TableScan>(context, source, std::move(filters));
}

RowStreamPtr MakeQueryScan(Context& context, Source& source, NodeList filters) {
    return std::make_unique<QueryScan>(context, source, std::move(filters));
}

RowStreamPtr MakeFilter(RowStreamPtr rows, NodeList filters) {
    return filters.empty() ? std::move(rows) : std::make_unique<Filter>(std::move(rows), std::move(filters));
}

RowStreamPtr MakeGate(RowStreamPtr rows, NodeList conditions) {
    return conditions.empty() ? std::move(rows)
                              : std::make_unique<Gate>(std::move(rows), std::move(conditions));
}

}  // namespace tavrel::jet::sql
