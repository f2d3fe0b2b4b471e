#include "ids/id_generator.h"

#include <set>
#include <vector>

#include <gtest/gtest.h>

#include "designdb/testing/fault_injector.h"
#include "ids/detail/max_finder.h"
#include "tests/support/allocation_counter.h"
#include "tests/support/drawn_design.h"

namespace {

using namespace Quill::Utils;
using Code = IdGeneratorResult::ECode;
using Orin::DesignDb::Testing::FaultInjector;
using Tests::DrawnDesign;
using Block = Orin::ContainerT<const Orin::IBlock>;
using Group = Orin::ContainerT<const Orin::IGroup>;
using Comp = Orin::ContainerT<const Orin::IComp>;

// ---- What some kinds of generator do not offer ----

template <class Generator, class... Design>
concept Inits = requires(Generator generator, Design... design) {
    generator.Init(design...);
};
template <class Generator>
concept Stores = requires(Generator generator) {
    generator.Store();
};

static_assert(!Stores<IdGenerator<AttributeId, 0>> && !Inits<IdGenerator<ObjectId, 0>, Group>);
static_assert(!Inits<IdGenerator<JointId, 0>, Comp> && !Inits<IdGenerator<SegmentId, 0>, Block, Group>);
static_assert(sizeof(IdGenerator<AttributeId, 1>) == sizeof(void*) && sizeof(IdGenerator<JointId, 0>) == sizeof(void*));
static_assert(!std::is_copy_constructible_v<IdGenerator<ObjectId, 0>>);
static_assert(!std::is_convertible_v<ObjectId, AttributeId> && sizeof(ObjectId) == 4 && ObjectId().Value() == NoId);
static_assert(IdGeneratorResult() && !IdGeneratorResult(Code::DatabaseError));

// ---- Helpers ----

// The next id, or minus the code of the failure; a failure must leave the id alone.
template <class Kind, int Locked>
std::int64_t NextOf(IdGenerator<Kind, Locked>& generator) {
    Kind id(77);
    const IdGeneratorResult result = generator.GetNext(id);
    if (result) return id.Value();
    EXPECT_EQ(id.Value(), 77U);
    return -static_cast<int>(result.code);
}

template <class Kind, int Locked>
Code InitOn(IdGenerator<Kind, Locked>& generator, const DrawnDesign& design, bool symbol) {
    return (symbol ? generator.Init(design.symbol) : generator.Init(design.block, design.sheet)).code;
}

// The first id for the sheet or symbol.
template <class Kind, int Locked>
std::int64_t FirstOf(const DrawnDesign& design, bool symbol) {
    IdGenerator<Kind, Locked> generator;
    InitOn(generator, design, symbol);
    return NextOf(generator);
}

// Calls check<Kind, Locked>(symbol) for both that can be looked at for ids, and every way of holding them.
template <class... Kinds, class Check>
void ForEveryInit(const Check& check) {
    for (const bool symbol : {false, true}) {
        SCOPED_TRACE(symbol ? "symbol" : "sheet");
        (check.template operator()<Kinds, 0>(symbol), ...);
        (check.template operator()<Kinds, 1>(symbol), ...);
    }
}

// Another client that works on the same sheet and symbol.
struct Watcher : Tests::DrawnObjects {
    explicit Watcher(const DrawnDesign& design) : DrawnObjects(design.database, "watcher") {
        Find(design.blockIndex, design.sheetIndex, design.symbolIndex);
        Tests::Must(Orin::IBlockViewQuill::Init(sheetView, *block, *sheet));
        Tests::Must(Orin::ICompViewQuill::Init(symbolView, *symbol));
    }

    // Locks everything that it can, and names what it cannot.
    std::string Lock() {
        return std::string(Orin::LockerT<Orin::IGroup>::ShallowLock(sheet, sheetLock) ? "" : "group ") +
               (Orin::LockerT<Orin::IBlockViewQuill>::Lock(sheetView, sheetViewLock) ? "" : "sheet view ") +
               (Orin::LockerT<Orin::IComp>::ShallowLock(symbol, symbolLock) ? "" : "component ") +
               (Orin::LockerT<Orin::ICompViewQuill>::Lock(symbolView, symbolViewLock) ? "" : "symbol view ");
    }
    // What it finds locked; holds nothing afterwards.
    std::string Refused() {
        const std::string refused = Lock();
        (sheetLock = {}, sheetViewLock = {}, symbolLock = {}, symbolViewLock = {});
        return refused;
    }

    Orin::ContainerT<const Orin::IBlockViewQuill> sheetView;
    Orin::ContainerT<const Orin::ICompViewQuill> symbolView;
    Orin::MutableContainerT<Orin::IGroup> sheetLock;
    Orin::MutableContainerT<Orin::IComp> symbolLock;
    Orin::MutableContainerT<Orin::IBlockViewQuill> sheetViewLock;
    Orin::MutableContainerT<Orin::ICompViewQuill> symbolViewLock;
};

constexpr const char* Mark = "$$Internal_LastIdUsed";

// The stored marks of the sheet and of the symbol.
std::string Marks(const DrawnDesign& design) {
    Orin::String sheet = "none", symbol = "none";
    design.sheet->GetAttribute(Mark, sheet);
    design.symbol->GetAttribute(Mark, symbol, Orin::EAttributeType::System);
    return std::string(sheet.View()) + " " + std::string(symbol.View());
}

// ---- Where the ids begin ----

TEST(IdGenerator, StartsAfterTheHighestIdOfAnythingDrawn) {
    EXPECT_EQ((FirstOf<ObjectId, 0>(DrawnDesign(), false)), 1) << "an empty sheet";
    EXPECT_EQ((FirstOf<ObjectId, 1>(DrawnDesign(), true)), 1) << "an empty symbol";
    const std::set<unsigned> sheetAttributes = {3, 4, 8, 11, 14, 15}, symbolAttributes = {1, 4};
    for (unsigned highest = 1; highest <= 20; ++highest) {
        SCOPED_TRACE(highest);
        DrawnDesign design(highest);
        design.DrawSheet();
        design.DrawSymbol();
        const std::int64_t sheetAttribute = sheetAttributes.count(highest) != 0 ? 1101 : 116;
        const std::int64_t symbolAttribute = symbolAttributes.count(highest) != 0 ? 1101 : 105;
        EXPECT_EQ((FirstOf<ObjectId, 0>(design, false)), 1001);
        EXPECT_EQ((FirstOf<ObjectId, 1>(design, true)), highest <= 10 ? 1001 : 11);
        EXPECT_EQ((FirstOf<AttributeId, 1>(design, false)), 0x00C00000 + sheetAttribute);
        EXPECT_EQ((FirstOf<AttributeId, 0>(design, true)), symbolAttribute);
    }
}

TEST(IdGenerator, FindsJointsAndSegmentsPassingOverReservedIds) {
    DrawnDesign design;
    design.DrawSheet();
    using namespace Quill::Utils::detail;
    IdCounter<ObjectId> objects;
    IdCounter<SegmentId> segments{.initialised = true};
    IdCounter<JointId> joints{.initialised = true};
    MaxFinder_Sch({&objects, &segments, &joints, nullptr}).process(design.block, design.sheet);
    EXPECT_EQ(joints.last, 711U);
    EXPECT_EQ(segments.last, 812U);
    EXPECT_EQ(objects.last, 0U) << "an uninitialised generator takes nothing";
}

TEST(IdGenerator, BelievesTheStoredMarkAndLooksAtNothing) {
    // clang-format off
    const std::pair<const char*, std::int64_t> cases[] = {
        {"500", 501}, {"007", 8}, {"12b", 13}, {"0", 1}, {"", 1}, {"x", 1}, {"-5", 1}, {"+5", 1}, {" 5", 1},
        {"4294967293", 4294967294}, {"4294967294", 1}, {"4294967301", 1}, {"18446744073709551621", 1},
    };
    // clang-format on
    DrawnDesign design(1);
    design.DrawSheet();
    design.DrawSymbol();
    Tests::Must(design.editor.SetAttribute(design.symbolIndex, Mark, "500", Orin::EAttributeType::User));
    EXPECT_EQ((FirstOf<ObjectId, 0>(design, true)), 1001) << "of another family of attributes";
    for (const bool symbol : {false, true})
        for (const auto& [mark, first] : cases) {
            SCOPED_TRACE(mark);
            Tests::Must(design.editor.SetAttribute(symbol ? design.symbolIndex : design.sheetIndex, Mark, mark,
                                                   Orin::EAttributeType::System));
            const FaultInjector calls;
            EXPECT_EQ((FirstOf<ObjectId, 0>(design, symbol)), first);
            EXPECT_EQ((FirstOf<ObjectId, 1>(design, symbol)), first);
            EXPECT_EQ(calls.Calls("IBlockViewQuill::Init") + calls.Calls("ICompViewQuill::Init"), 0U);
        }
}

// ---- Counting ----

TEST(IdGenerator, LaysOutAttributeIds) {
    struct Case {
        const char* why;
        const char* sheetId;  // null: on a symbol
        std::vector<std::uint32_t> used;
        std::vector<std::int64_t> next;
    };
    const Case cases[] = {
        {"the sheet's id is above", "3", {}, {0x00C00001, 0x00C00002}},
        {"the sequence wraps within the sheet", "3", {0x3FFFFF}, {0x00C00000, 0x00C00001}},
        {"ids of other sheets count by their sequence", "3", {0x00C00005, 0x01C00009}, {0x00C0000A}},
        {"however large they are", "3", {0x00C00005, 0x01C00004}, {0x00C00006}},
        {"0 and no id change nothing", "3", {7, 0, NoId}, {0x00C00008}},
        {"sheet ids shift as unsigned numbers", "-2", {}, {0xFF800001}},
        {"their high bits go", "1025", {}, {0x00400001}},
        {"-1 means no sheet", "-1", {0x3FFFFF}, {0x00400000}},
        {"no number means sheet 0", "x", {}, {1}},
        {"a symbol counts on", nullptr, {0x3FFFFF}, {0x00400000, 0x00400001}},
        {"a symbol compares sequences too", nullptr, {0x00400007, 0x00800006}, {0x00400008}},
        {"the ids of a symbol never end", nullptr, {0xFFFFFFFD}, {0xFFFFFFFE, 0xFFFFFFFF, 0, 1}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        const DrawnDesign design(0, c.sheetId);
        const auto check = [&](auto& generator, IdGeneratorResult initialised) {
            EXPECT_TRUE(initialised);
            for (const std::uint32_t id : c.used)
                EXPECT_TRUE(generator.UpdateLast(AttributeId(id)));
            EXPECT_EQ(generator.UpdateLast(AttributeId(ReservedId)).code, Code::IdSpaceExhausted);
            for (const std::int64_t id : c.next)
                EXPECT_EQ(NextOf(generator), id);
        };
        IdGenerator<AttributeId, 0> free;
        IdGenerator<AttributeId, 1> locked;
        if (c.sheetId != nullptr) check(free, free.Init(design.sheet));
        check(free, c.sheetId != nullptr ? free.Init(design.block, design.sheet) : free.Init(design.symbol));
        check(locked, c.sheetId != nullptr ? locked.Init(design.block, design.sheet) : locked.Init(design.symbol));
    }
}

TEST(IdGenerator, CountsObjectsUpToTheReservedId) {
    DrawnDesign design;
    IdGenerator<ObjectId, 0> generator;
    ASSERT_TRUE(generator.Init(design.block, design.sheet));
    for (const std::uint32_t used : {9U, 8U, 0U, NoId})
        EXPECT_TRUE(generator.UpdateLast(ObjectId(used)));
    EXPECT_EQ(generator.UpdateLast(ObjectId(ReservedId)).code, Code::IdSpaceExhausted);
    EXPECT_EQ(Tests::AllocationsOf([&] { EXPECT_EQ(NextOf(generator), 10); }), 0U);
    EXPECT_TRUE(generator.UpdateLast(ObjectId(0xFFFFFFFD)));
    EXPECT_EQ(NextOf(generator), 0xFFFFFFFE) << "what UpdateLast refuses is handed out as the very last id";
    EXPECT_EQ(NextOf(generator), -3);
    EXPECT_TRUE(generator.Store());
    EXPECT_EQ(Marks(design), "4294967294 none") << "an exhausted generator keeps its last id";
}

// ---- Life and locks ----

TEST(IdGenerator, AnswersNotInitializedUntilAnInitSucceeds) {
    const auto refuses = []<class Generator>(Generator& generator) {
        EXPECT_EQ(NextOf(generator), -2);
        if constexpr (Stores<Generator>) {
            EXPECT_EQ(generator.Store().code, Code::NotInitialized);
        }
    };
    EXPECT_EQ((IdGenerator<JointId, 1>().UpdateLast(JointId(5)).code), Code::NotInitialized);
    EXPECT_EQ((IdGenerator<SegmentId, 0>().UpdateLast(SegmentId(ReservedId)).code), Code::NotInitialized);
    const DrawnDesign design, idless(0, nullptr);
    ForEveryInit<ObjectId, AttributeId>([&]<class Kind, int Locked>(bool symbol) {
        IdGenerator<Kind, Locked> generator;
        refuses(generator);
        EXPECT_EQ(generator.UpdateLast(Kind(NoId)).code, Code::NotInitialized);
        EXPECT_EQ(InitOn(generator, design, symbol), Code::Ok);
        EXPECT_EQ((symbol ? generator.Init(Comp()) : generator.Init(design.block, Group())).code, Code::DatabaseError);
        refuses(generator);
    });
    IdGenerator<AttributeId, 0> free;
    EXPECT_TRUE(free.Init(design.sheet));
    EXPECT_EQ(free.Init(idless.block, idless.sheet).code, Code::NoSheetId);
    EXPECT_TRUE(free.Init(design.sheet));
    EXPECT_EQ(free.Init(idless.sheet).code, Code::NoSheetId);
    refuses(free);
    EXPECT_EQ(free.Init(Group()).code, Code::NoSheetId);
    IdGenerator<AttributeId, 1> locked;
    EXPECT_TRUE(locked.Init(design.symbol));
    EXPECT_EQ(locked.Init(design.sheet).code, Code::NotSupported);
    refuses(locked);
    EXPECT_EQ(Watcher(design).Refused(), "");
}

TEST(IdGenerator, HoldsItsLockUntilItIsInitialisedAgainOrGone) {
    const DrawnDesign design;
    Watcher watcher(design);
    const char* const held[][2] = {{"group ", "component "}, {"sheet view ", "symbol view "}};
    ForEveryInit<ObjectId, AttributeId>([&]<class Kind, int Locked>(bool symbol) {
        const bool views = std::is_same_v<Kind, AttributeId>;
        {
            IdGenerator<Kind, Locked> generator;
            EXPECT_EQ(InitOn(generator, design, !symbol), Code::Ok);
            EXPECT_EQ(InitOn(generator, design, symbol), Code::Ok);
            EXPECT_EQ(watcher.Refused(), Locked == 1 ? held[views][symbol] : "") << "the first lock is given up";
        }
        EXPECT_EQ(watcher.Refused(), "");
        EXPECT_EQ(watcher.Lock(), "");
        IdGenerator<Kind, Locked> late;
        const FaultInjector calls;
        EXPECT_EQ(InitOn(late, design, symbol), Locked == 1 ? Code::DatabaseError : Code::Ok);
        EXPECT_EQ(calls.Calls(symbol ? "ICompViewQuill::GetIterTexts" : "IBlockViewQuill::GetIterTexts"),
                  views || Locked == 0 ? 1U : 0U)
            << "a view is locked once it was looked at, a group or component before";
        EXPECT_EQ(Locked == 1 ? calls.Calls("IGroup::GetAttribute") : 0U, 0U) << "locked, then read";
        EXPECT_EQ(watcher.Refused(), "");
    });
}

TEST(IdGenerator, SharesItsStateByAssignment) {
    const DrawnDesign design;
    Watcher watcher(design);
    auto first = std::make_unique<IdGenerator<ObjectId, 1>>();
    IdGenerator<ObjectId, 1> second;
    EXPECT_TRUE(first->Init(design.block, design.sheet) && second.Init(design.symbol));
    second = *first;
    const auto& self = second;
    second = self;
    EXPECT_EQ(watcher.Refused(), "group ") << "the state that nobody refers to is gone";
    EXPECT_EQ(NextOf(*first), 1);
    EXPECT_EQ(NextOf(second), 2);
    first.reset();
    EXPECT_EQ(watcher.Refused(), "group ");
    EXPECT_EQ(NextOf(second), 3);
}

// ---- Storing ----

TEST(IdGenerator, StoresTheMarkWhereItWasInitialised) {
    ForEveryInit<ObjectId>([]<class Kind, int Locked>(bool symbol) {
        SCOPED_TRACE(Locked);
        const char* const write = symbol ? "IComp::SetAttribute" : "IGroup::SetAttribute";
        const auto marks = [&](const std::string& mark) { return symbol ? "none " + mark : mark + " none"; };
        DrawnDesign design;
        Watcher watcher(design);
        IdGenerator<Kind, Locked> generator;
        ASSERT_EQ(InitOn(generator, design, symbol), Code::Ok);
        generator.UpdateLast(ObjectId(4000000000));
        const FaultInjector calls;
        EXPECT_TRUE(generator.Store());
        EXPECT_EQ(Marks(design), marks("4000000000"));
        EXPECT_TRUE(generator.Store());
        EXPECT_EQ(calls.Calls(write), 2U) << "the mark is written even when it stands there";
        NextOf(generator);
        EXPECT_EQ(watcher.Lock() == "", Locked == 0) << "a lock is held for the moment or all the time";
        if (Locked == 0) {
            EXPECT_THROW(generator.Store(), Orin::Result);
        }
        watcher.Refused();
        EXPECT_TRUE(generator.Store());
        EXPECT_EQ(Marks(design), marks("4000000001"));
        Tests::Must(symbol ? design.editor.DeleteComp(design.symbolIndex)
                           : design.editor.DeleteGroup(design.sheetIndex));
        NextOf(generator);
        EXPECT_TRUE(generator.Store()) << "there is nowhere to store it";
    });
}

}  // namespace
