// FindingList: findings in few bytes each, taken out one by one. A description may give rise to as many as it has
// bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "ZoITrellanInspector.h"
#include "base/FindingForms.h"
#include "base/PackedBytes.h"

namespace ZoNUpdateBase {

class FindingList {
public:
    // Lists that are to be merged have the same `forms`.
    explicit FindingList(std::shared_ptr<FindingForms> forms = std::make_shared<FindingForms>())
        : forms(std::move(forms))
    {
    }
    FindingList(FindingList&&) = default;
    FindingList& operator=(FindingList&&) = default;

    std::size_t size() const { return count; }

    // Where memory is short, nothing more can be done with the list.
    void add(const ZoNTrellanInspector::ZoTFinding& finding);

    // Sets `finding` to the one at `position`, which must be less than size(). One after the other is fastest.
    void get(std::size_t position, ZoNTrellanInspector::ZoTFinding& finding) const;

    // Whether, in the order of the description, the next finding can be added to the list, which has some.
    bool isInOrderWith(const ZoNTrellanInspector::ZoTFinding& next) const;

    // The findings of `lists`, each of which is in the order of the description, in that order: of those about one
    // object the ones of the earlier list first.
    static FindingList merge(const std::vector<FindingList>& lists);

private:
    // What a finding is about. In a block it is told by what differs from the finding before.
    struct Subject {
        bool isInDescription = true;
        std::int32_t entry = -1;
        std::int32_t board = -1;

        auto inOrder() const { return std::tuple(!isInDescription, entry, board); }
    };

    struct Reader {
        std::size_t next = 0;  // position
        PackedReader block;
        Subject subject;
        std::string_view name;
        bool hasMore = false;  // than most findings
    };

    static Subject subjectOf(const ZoNTrellanInspector::ZoTFinding& finding);

    void append(const Subject& subject, std::string_view name, bool hasMore, std::string_view rest);
    void readSubject(Reader& at) const;
    std::string_view takeRest(Reader& at) const;

    std::shared_ptr<FindingForms> forms;
    std::vector<std::string> blocks;
    std::size_t count = 0;
    Subject last;
    std::string lastName;  // in the block
    std::string packed;    // of the present finding
    mutable Reader reader;
};

}  // namespace ZoNUpdateBase
