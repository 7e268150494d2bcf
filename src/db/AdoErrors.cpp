#include "db/AdoErrors.h"

#include <new>
#include <stdexcept>

#include "db/AdoCodes.h"

namespace tavrel::db {

namespace {

using namespace adoErrors;

/// ADO's own texts: the engine's table has other failures under these numbers, or none.
constexpr ErrorText kTexts[] = {
    {kNoCurrentRecord,
     "BOF나 EOF가 True이거나 현재 레코드가 삭제되었습니다. 요청한 작업에는 현재 레코드가 필요합니다.",
     "Either BOF or EOF is True, or the current record has been deleted. Requested operation requires a "
     "current record."},
    {kItemNotFound, "요청한 이름이나 서수에 해당하는 항목을 컬렉션에서 찾을 수 없습니다.",
     "Item cannot be found in the collection corresponding to the requested name or ordinal."},
    {kObjectClosed, "개체가 닫혀 있으면 작업을 할 수 없습니다.",
     "Operation is not allowed when the object is closed."},
    {kObjectOpen, "개체가 열려 있으면 작업을 할 수 없습니다.",
     "Operation is not allowed when the object is open."},
    {kProviderNotFound, "공급자를 찾을 수 없습니다. 제대로 설치되지 않았을 수 있습니다.",
     "Provider cannot be found. It may not be properly installed."},
    {kConnectionUnusable,
     "이 작업에 연결을 사용할 수 없습니다. 연결이 닫혀 있거나 이 상황에서는 올바르지 않습니다.",
     "The connection cannot be used to perform this operation. It is either closed or invalid in this "
     "context."},
};

}  // namespace

Error AdoError(std::int32_t number) {
    for (const ErrorText& text : kTexts) {
        if (text.number == number) {
            return Error(number, std::string(text.korean));
        }
    }
    return MakeError(number);
}

ProviderError::ProviderError(const Error& engine)
    : Error(AdoNumber(engine), engine.Description()), engineNumber_(engine.Number()) {}

void ThrowAsProvider() {
    try {
        throw;
    } catch (const Error& error) {
        throw ProviderError(error);
    } catch (const std::bad_alloc&) {
        throw MakeError(errors::kOutOfMemory);
    } catch (const std::length_error&) {
        throw MakeError(errors::kOutOfMemory);
    }
}

}  // namespace tavrel::db
