#include "text/ErrorTable.h"

#include <algorithm>
#include <functional>

namespace tavrel {
namespace {

constexpr ErrorText kTable[] = {
    // The run-time
    {5, "프로시저 호출 또는 인수가 잘못되었습니다.", "Invalid procedure call or argument"},
    {6, "오버플로입니다.", "Overflow"},
    {7, "메모리가 부족합니다.", "Out of memory"},
    {11, "0으로 나누기 오류입니다.", "Division by zero"},
    {13, "형식이 일치하지 않습니다.", "Type mismatch"},
    {51, "내부 오류입니다.", "Internal error"},
    {52, "파일 이름 또는 번호가 잘못되었습니다.", "Bad file name or number"},
    {53, "파일을 찾을 수 없습니다.", "File not found"},
    {57, "장치 입출력 오류입니다.", "Device I/O error"},
    {58, "파일이 이미 있습니다.", "File already exists"},
    {61, "디스크에 남은 공간이 없습니다.", "Disk full"},
    {67, "열린 파일이 너무 많습니다.", "Too many files"},
    {70, "사용 권한이 없거나 파일이 사용 중입니다.", "Permission denied"},
    {75, "경로 또는 파일에 접근할 수 없습니다.", "Path/File access error"},
    {76, "경로를 찾을 수 없습니다.", "Path not found"},
    {91, "개체 변수 또는 With 블록 변수가 설정되지 않았습니다.",
     "Object variable or With block variable not set"},
    {94, "Null을 잘못 사용했습니다.", "Invalid use of Null"},

    // The engine: opening, storing, finding
    {3001, "인수가 잘못되었습니다.", "Invalid argument."},
    {3010, "'|1' 테이블이 이미 있습니다.", "Table '|1' already exists."},
    {3011,
     "데이터베이스 엔진에서 '|1' 개체를 찾을 수 없습니다. 개체가 있는지, 이름과 경로가 올바른지 "
     "확인하십시오.",
     "The Microsoft Jet database engine could not find the object '|1'.  Make sure the object exists and "
     "that you spell its name and the path name correctly."},
    {3015, "'|1'은(는) 이 테이블의 인덱스가 아닙니다.", "'|1' is not an index in this table."},
    {3017, "필드 크기가 너무 큽니다.", "The size of a field is too long."},
    {3021, "현재 레코드가 없습니다.", "No current record."},
    {3022,
     "인덱스, 기본 키 또는 관계에 중복된 값을 만들게 되므로 테이블을 변경하지 못했습니다. 중복된 데이터가 "
     "있는 필드의 값을 바꾸거나, 인덱스를 제거하거나, 중복 값을 허용하도록 인덱스를 다시 정의한 뒤 다시 "
     "시도하십시오.",
     "The changes you requested to the table were not successful because they would create duplicate values "
     "in the index, primary key, or relationship.  Change the data in the field or fields that contain "
     "duplicate data, remove the index, or redefine the index to permit duplicate entries and try again."},
    {3024, "'|1' 파일을 찾을 수 없습니다.", "Could not find file '|1'."},
    {3026, "디스크 공간이 부족합니다.", "Not enough space on disk."},
    {3027, "업데이트할 수 없습니다. 데이터베이스 또는 개체가 읽기 전용입니다.",
     "Cannot update.  Database or object is read-only."},
    {3028,
     "응용 프로그램을 시작할 수 없습니다. 작업 그룹 정보 파일이 없거나 다른 사용자가 단독으로 열었습니다.",
     "Cannot start your application.  The workgroup information file is missing or opened exclusively by "
     "another user."},
    {3029, "계정 이름 또는 암호가 올바르지 않습니다.", "Not a valid account name or password."},
    {3031, "암호가 올바르지 않습니다.", "Not a valid password."},
    {3034, "트랜잭션을 시작하지 않고 커밋하거나 롤백하려고 했습니다.",
     "You tried to commit or rollback a transaction without first beginning a transaction."},
    {3035, "시스템 리소스가 부족합니다.", "System resource exceeded."},
    {3036, "데이터베이스가 최대 크기에 도달했습니다.", "Database has reached maximum size."},
    {3040, "읽는 동안 디스크 입출력 오류가 발생했습니다.", "Disk I/O error during read."},
    {3041, "이전 버전의 응용 프로그램에서 만든 데이터베이스는 열 수 없습니다.",
     "Cannot open a database created with a previous version of your application."},
    {3043, "디스크 또는 네트워크 오류입니다.", "Disk or network error."},
    {3044,
     "'|1'은(는) 올바른 경로가 아닙니다. 경로 이름의 철자가 맞는지, 파일이 있는 서버에 연결되어 있는지 "
     "확인하십시오.",
     "'|1' is not a valid path.  Make sure that the path name is spelled correctly and that you are "
     "connected to the server on which the file resides."},
    {3045, "'|1'을(를) 사용할 수 없습니다. 파일이 이미 사용 중입니다.",
     "Could not use '|1'; file already in use."},
    {3047, "레코드가 너무 큽니다.", "Record is too large."},
    {3049,
     "'|1' 데이터베이스를 열 수 없습니다. 응용 프로그램에서 인식하는 데이터베이스가 아니거나 파일이 "
     "손상되었습니다.",
     "Cannot open database '|1'.  It may not be a database that your application recognizes, or the file may "
     "be corrupt."},
    {3051,
     "데이터베이스 엔진에서 '|1' 파일을 열 수 없습니다. 다른 사용자가 단독으로 열었거나 데이터를 볼 권한이 "
     "없습니다.",
     "The Microsoft Jet database engine cannot open the file '|1'.  It is already opened exclusively by "
     "another user, or you need permission to view its data."},
    {3058, "인덱스 또는 기본 키에는 Null 값이 들어갈 수 없습니다.",
     "Index or primary key cannot contain a Null value."},
    {3061, "매개 변수가 부족합니다. 필요한 개수: |1", "Too few parameters. Expected |1."},
    {3073, "업데이트할 수 있는 쿼리여야 합니다.", "Operation must use an updateable query."},
    {3075, "쿼리 식 '|2'의 |1", "|1 in query expression '|2'."},
    {3078,
     "데이터베이스 엔진에서 입력 테이블 또는 쿼리 '|1'을(를) 찾을 수 없습니다. 테이블이나 쿼리가 있는지, "
     "이름이 올바른지 확인하십시오.",
     "The Microsoft Jet database engine cannot find the input table or query '|1'.  Make sure it exists and "
     "that its name is spelled correctly."},
    {3079, "지정한 필드 '|1'은(는) SQL 문의 FROM 절에 있는 둘 이상의 테이블을 가리킬 수 있습니다.",
     "The specified field '|1' could refer to more than one table listed in the FROM clause of your SQL "
     "statement."},
    {3085, "식에 정의되지 않은 함수 '|1'이(가) 있습니다.", "Undefined function '|1' in expression."},
    {3090, "일련 번호 필드는 한 테이블에 하나만 둘 수 있습니다.",
     "Resultant table not allowed to have more than one AutoNumber field."},
    {3094, "트랜잭션이 이미 시작되어 있습니다.", "A transaction has already begun."},
    {3096, "WHERE 절 (|1)에는 집계 함수를 쓸 수 없습니다.",
     "Cannot have aggregate function in WHERE clause (|1)."},
    {3113, "'|1'을(를) 업데이트할 수 없습니다. 업데이트할 수 없는 필드입니다.",
     "Cannot update '|1'; field not updateable."},
    {3122, "지정한 식 '|1'이(가) 집계 함수의 일부로 들어 있지 않은 쿼리를 실행하려고 했습니다.",
     "You tried to execute a query that does not include the specified expression '|1' as part of an "
     "aggregate function."},
    {3125,
     "'|1'은(는) 올바른 이름이 아닙니다. 마침표, 느낌표 같은 문자가 없고 너무 길지 않은지 확인하십시오.",
     "'|1' is not a valid name.  Make sure that it does not include invalid characters or punctuation and "
     "that it is not too long."},
    {3127,
     "INSERT INTO 문에 알 수 없는 필드 이름 '|1'이(가) 있습니다. 이름이 올바른지 확인하고 다시 시도하십시오.",
     "The INSERT INTO statement contains the following unknown field name: '|1'.  Make sure you have typed "
     "the name correctly, and try the operation again."},
    {3129, "SQL 문이 잘못되었습니다. 'DELETE', 'INSERT', 'PROCEDURE', 'SELECT' 또는 'UPDATE'가 와야 합니다.",
     "Invalid SQL statement; expected 'DELETE', 'INSERT', 'PROCEDURE', 'SELECT', or 'UPDATE'."},
    {3130, "DELETE 문의 구문 오류입니다.", "Syntax error in DELETE statement."},
    {3131, "FROM 절의 구문 오류입니다.", "Syntax error in FROM clause."},
    {3134, "INSERT INTO 문의 구문 오류입니다.", "Syntax error in INSERT INTO statement."},
    {3135, "JOIN 연산의 구문 오류입니다.", "Syntax error in JOIN operation."},
    {3138, "ORDER BY 절의 구문 오류입니다.", "Syntax error in ORDER BY clause."},
    {3141, "SELECT 문에 예약어가 있거나, 인수 이름의 철자가 틀렸거나 빠졌거나, 문장 부호가 잘못되었습니다.",
     "The SELECT statement includes a reserved word or an argument name that is misspelled or missing, or "
     "the punctuation is incorrect."},
    {3142, "SQL 문이 끝난 뒤에 문자가 있습니다.", "Characters found after end of SQL statement."},
    {3144, "UPDATE 문의 구문 오류입니다.", "Syntax error in UPDATE statement."},
    {3163, "추가하려는 데이터의 양에 비해 필드가 너무 작습니다. 데이터를 줄여서 입력하거나 붙여 넣으십시오.",
     "The field is too small to accept the amount of data you attempted to add.  Try inserting or pasting "
     "less data."},

    // Tables, fields, relations
    {3190, "정의한 필드가 너무 많습니다.", "Too many fields defined."},
    {3191, "필드를 두 번 이상 정의할 수 없습니다.", "Cannot define field more than once."},
    {3192, "출력 테이블 '|1'을(를) 찾을 수 없습니다.", "Could not find output table '|1'."},
    {3196,
     "데이터베이스 '|1'을(를) 다른 사용자나 프로세스가 이미 사용하고 있습니다. 데이터베이스를 사용할 수 있을 "
     "때 다시 시도하십시오.",
     "The database '|1' is already in use by another person or process.  When the database is available, try "
     "the operation again."},
    {3200, "'|1' 테이블에 관련된 레코드가 있으므로 레코드를 삭제하거나 변경할 수 없습니다.",
     "The record cannot be deleted or changed because table '|1' includes related records."},
    {3201, "'|1' 테이블에 관련된 레코드가 있어야 하므로 레코드를 추가하거나 변경할 수 없습니다.",
     "You cannot add or change a record because a related record is required in table '|1'."},
    {3204, "데이터베이스가 이미 있습니다.", "Database already exists."},
    {3206, "필드와 그 필드 자신 사이에는 관계를 만들 수 없습니다.",
     "You cannot create a relationship between a field and itself."},
    {3211,
     "'|1' 테이블을 다른 사용자나 프로세스가 이미 사용하고 있으므로 데이터베이스 엔진에서 잠글 수 없습니다.",
     "The database engine could not lock table '|1' because it is already in use by another person or "
     "process."},
    {3258, "모호한 외부 조인이 있어 SQL 문을 실행할 수 없습니다.",
     "The SQL statement could not be executed because it contains ambiguous outer joins."},
    {3261, "컴퓨터 '|3'의 사용자 '|2'이(가) '|1' 테이블을 단독으로 잠갔습니다.",
     "Table '|1' is exclusively locked by user '|2' on machine '|3'."},
    {3264, "정의된 필드가 없어 테이블이나 인덱스를 추가할 수 없습니다.",
     "No field defined--cannot append TableDef or Index."},
    {3265, "이 컬렉션에 해당 항목이 없습니다.", "Item not found in this collection."},
    {3277, "인덱스에는 필드를 10개까지만 둘 수 있습니다.", "Cannot have more than 10 fields in an index."},
    {3280, "인덱스의 일부이거나 시스템에 필요한 필드는 삭제할 수 없습니다.",
     "Cannot delete a field that is part of an index or is needed by the system."},
    {3281, "이 인덱스 또는 테이블을 삭제할 수 없습니다. 현재 인덱스이거나 관계에 사용되고 있습니다.",
     "Cannot delete this index or table.  It is either the current index or is used in a relationship."},
    {3282, "데이터가 들어 있는 테이블에서는 할 수 없는 작업입니다.",
     "Operation not supported on a table that contains data."},
    {3283, "기본 키가 이미 있습니다.", "Primary key already exists."},
    {3289, "CONSTRAINT 절의 구문 오류입니다.", "Syntax error in CONSTRAINT clause."},
    {3290, "CREATE TABLE 문의 구문 오류입니다.", "Syntax error in CREATE TABLE statement."},
    {3291, "CREATE INDEX 문의 구문 오류입니다.", "Syntax error in CREATE INDEX statement."},
    {3292, "필드 정의의 구문 오류입니다.", "Syntax error in field definition."},
    {3293, "ALTER TABLE 문의 구문 오류입니다.", "Syntax error in ALTER TABLE statement."},
    {3295, "DROP TABLE 또는 DROP INDEX의 구문 오류입니다.", "Syntax error in DROP TABLE or DROP INDEX."},
    {3303, "관계의 일부인 필드는 삭제할 수 없습니다.",
     "Cannot delete a field that is part of a relationship."},
    {3306,
     "하위 쿼리가 둘 이상의 필드를 반환할 수 있는데 EXISTS 예약어가 없습니다. 하위 쿼리의 SELECT 문이 필드를 "
     "하나만 요청하도록 고치십시오.",
     "You have written a subquery that can return more than one field without using the EXISTS reserved word "
     "in the main query's FROM clause.  Revise the SELECT statement of the subquery to request only one "
     "field."},
    {3307, "통합 쿼리에서 선택한 두 테이블 또는 쿼리의 열 개수가 같지 않습니다.",
     "The number of columns in the two selected tables or queries of a union query do not match."},
    {3314,
     "'|1' 필드의 Required 속성이 True이므로 Null 값이 들어갈 수 없습니다. 이 필드에 값을 입력하십시오.",
     "The field '|1' cannot contain a Null value because the Required property for this field is set to "
     "True.  Enter a value in this field."},
    {3315, "'|1' 필드에는 빈 문자열이 들어갈 수 없습니다.", "Field '|1' cannot be a zero-length string."},
    {3316, "|1", "|1"},
    {3317,
     "입력한 값이 '|2'의 유효성 검사 규칙 '|1'에 맞지 않습니다. 이 필드의 식이 받아들일 수 있는 값을 "
     "입력하십시오.",
     "One or more values are prohibited by the validation rule '|1' set for '|2'.  Enter a value that the "
     "expression for this field can accept."},
    {3343, "데이터베이스 형식을 인식할 수 없습니다: '|1'", "Unrecognized database format '|1'."},
    {3346, "쿼리 값의 개수와 대상 필드의 개수가 다릅니다.",
     "Number of query values and destination fields are not the same."},
    {3349, "숫자 필드 오버플로입니다.", "Numeric field overflow."},
    {3354, "이 하위 쿼리는 레코드를 하나까지만 반환할 수 있습니다.",
     "At most one record can be returned by this subquery."},
    {3355, "기본값의 구문 오류입니다.", "Syntax error in default value."},
    {3356,
     "컴퓨터 '|2'의 사용자 '|1'이(가) 이미 단독으로 연 데이터베이스를 열려고 했습니다. 데이터베이스를 사용할 "
     "수 있을 때 다시 시도하십시오.",
     "You attempted to open a database that is already opened exclusively by user '|1' on machine '|2'.  Try "
     "again when the database is available."},
    {3368, "관계에는 데이터 형식이 같은 필드가 같은 개수로 있어야 합니다.",
     "Relationship must be on the same number of fields with the same data types."},
    {3371, "테이블 또는 제약 조건을 찾을 수 없습니다.", "Cannot find table or constraint."},
    {3373, "관계를 만들 수 없습니다. 참조되는 테이블 '|1'에 기본 키가 없습니다.",
     "Cannot create relationship. Referenced table '|1' does not have a primary key."},
    {3375, "'|1' 테이블에 이름이 '|2'인 인덱스가 이미 있습니다.",
     "Table '|1' already has an index named '|2'."},
    {3376, "'|1' 테이블이 없습니다.", "Table '|1' does not exist."},
    {3378, "현재 데이터베이스에 이름이 '|1'인 관계가 이미 있습니다.",
     "There is already a relationship named '|1' in the current database."},
    {3379,
     "참조 무결성을 강제하는 관계를 만들 수 없습니다. '|1' 테이블의 기존 데이터가 '|2' 테이블의 참조 무결성 "
     "규칙에 어긋납니다.",
     "Cannot create relationships to enforce referential integrity.  Existing data in table '|1' violates "
     "referential integrity rules in table '|2'."},
    {3380, "'|1' 필드가 '|2' 테이블에 이미 있습니다.", "Field '|1' already exists in table '|2'."},
    {3381, "'|2' 테이블에 이름이 '|1'인 필드가 없습니다.", "There is no field named '|1' in table '|2'."},
    {3382, "'|1' 필드의 크기가 너무 큽니다.", "Size of field '|1' is too long."},
    {3383, "'|1' 필드를 삭제할 수 없습니다. 하나 이상의 관계에 속해 있습니다.",
     "Cannot delete field '|1'.  It is part of one or more relationships."},
    {3388, "'|2'의 유효성 검사 식 또는 기본값에 알 수 없는 함수 '|1'이(가) 있습니다.",
     "Unknown function '|1' in validation expression or default value on '|2'."},

    // Cascades
    {3396,
     "연계 작업을 할 수 없습니다. '|1' 테이블에 관련된 레코드가 있으므로 참조 무결성 규칙에 어긋나게 됩니다.",
     "Cannot perform cascading operation.  Since related records exist in table '|1', the referential "
     "integrity rules would be violated."},
    {3397, "연계 작업을 할 수 없습니다. '|1' 테이블에 관련된 레코드가 있어야 합니다.",
     "Cannot perform cascading operation.  There must be a related record in table '|1'."},
    {3398, "연계 작업을 할 수 없습니다. '|1' 테이블의 키가 Null이 됩니다.",
     "Cannot perform cascading operation.  It would result in a null key in table '|1'."},
    {3399, "연계 작업을 할 수 없습니다. '|1' 테이블의 키가 중복됩니다.",
     "Cannot perform cascading operation.  It would result in a duplicate key in table '|1'."},
    {3400, "연계 작업을 할 수 없습니다. '|2' 테이블의 '|1' 필드가 두 번 업데이트됩니다.",
     "Cannot perform cascading operation.  It would result in two updates on field '|1' in table '|2'."},
    {3401, "연계 작업을 할 수 없습니다. '|1' 필드가 Null이 되는데, 이는 허용되지 않습니다.",
     "Cannot perform cascading operation.  It would cause field '|1' to become Null, which is not allowed."},
    {3402, "연계 작업을 할 수 없습니다. '|1' 필드가 빈 문자열이 되는데, 이는 허용되지 않습니다.",
     "Cannot perform cascading operation.  It would cause field '|1' to become a zero-length string, which "
     "is not allowed."},
    {3403, "연계 작업을 할 수 없습니다: '|1'", "Cannot perform cascading operation: '|1'."},
    {3404, "연계 작업을 할 수 없습니다. 입력한 값이 '|1'의 유효성 검사 규칙 '|2'에 맞지 않습니다.",
     "Cannot perform cascading operation.  The value entered is prohibited by the validation rule '|2' set "
     "for '|1'."},
    {3409, "인덱스 또는 관계의 정의에 잘못된 필드 정의 '|1'이(가) 있습니다.",
     "Invalid field definition '|1' in definition of index or relationship."},
    {3411,
     "항목이 잘못되었습니다. 입력한 값이 '|2' 필드에 비해 너무 크므로 '|1' 테이블에 지정된 연계 작업을 할 수 "
     "없습니다.",
     "Invalid entry.  Cannot perform cascading operation specified in table '|1' because value entered is "
     "too big for field '|2'."},
    {3412, "다른 사용자가 사용하고 있으므로 테이블을 연계 업데이트할 수 없습니다.",
     "Cannot perform cascading update on the table because it is currently in use by another user."},
    {3413, "컴퓨터 '|3'의 사용자 '|2'이(가) 사용하고 있으므로 '|1' 테이블을 연계 업데이트할 수 없습니다.",
     "Cannot perform cascading update on table '|1' because it is currently in use by user '|2' on machine "
     "'|3'."},
    {3414, "'|1' 테이블이 사용 중이므로 연계 작업을 할 수 없습니다.",
     "Cannot perform cascading operation on table '|1' because it is currently in use."},

    // Values and the rest
    {3421, "데이터 형식 변환 오류입니다.", "Data type conversion error."},
    {3428, "데이터베이스에 문제가 있습니다. 데이터베이스를 복구하고 압축하여 문제를 해결하십시오.",
     "A problem occurred in your database.  Correct the problem by repairing and compacting the database."},
    {3464, "조건식의 데이터 형식이 일치하지 않습니다.", "Data type mismatch in criteria expression."},
    {3609, "기본 테이블의 참조되는 필드에 대한 고유 인덱스가 없습니다.",
     "No unique index found for the referenced field of the primary table."},
    {3615, "식의 형식이 일치하지 않습니다.", "Type mismatch in expression."},
    {3626,
     "작업에 실패했습니다. '|1' 테이블에 인덱스가 너무 많습니다. 테이블의 인덱스를 일부 삭제한 뒤 다시 "
     "시도하십시오.",
     "The operation failed. There are too many indexes on table '|1'. Delete some of the indexes on the "
     "table and try the operation again."},
    {3704,
     "컴퓨터 '|2'의 사용자 '|1'이(가) 이미 연 데이터베이스를 열려고 했습니다. 데이터베이스를 사용할 수 있을 "
     "때 다시 시도하십시오.",
     "You attempted to open a database that is already opened by user '|1' on machine '|2'.  Try again when "
     "the database is available."},
    {3707, "연계 옵션이 기존 관계 '|1'의 연계 옵션과 충돌합니다.",
     "The cascade options of the new relationship conflict with those of the existing relationship '|1'."},
    {3708, "트랜잭션 문의 구문 오류입니다. TRANSACTION 또는 WORK가 오거나 아무것도 오지 않아야 합니다.",
     "Syntax error in Transaction statement. Expected TRANSACTION, WORK, or nothing."},
    {3720, "'|1' 필드를 변경할 수 없습니다. 하나 이상의 관계에 속해 있습니다.",
     "Cannot change field '|1'. It is part of one or more relationships."},
    {3764, "하나 이상의 인덱스를 다시 만들지 못했습니다.", "Failed to re-create one or more indexes."},
    {3806, "NULL, NOT NULL 특성은 여러 번 설정할 수 없습니다.",
     "Cannot set multiple NULL, NOT NULL attributes."},
    {3990, "정렬 순서를 알 수 없는 문자 '|1'이(가) 있어 인덱스 키를 만들 수 없습니다.",
     "The index key cannot be made because the sort weight of the character '|1' is not known."},
};

// Found by binary search, and no number has two texts.
static_assert(std::ranges::adjacent_find(kTable, std::greater_equal<>{}, &ErrorText::number) ==
              std::ranges::end(kTable));

}  // namespace

std::span<const ErrorText> ErrorTable() {
    return kTable;
}

}  // namespace tavrel
