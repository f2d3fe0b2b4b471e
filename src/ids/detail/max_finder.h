// Finds the ids that the graphics of a sheet or a symbol carry.
#pragma once

#include "designdata/block_orin_quill_data_visitor.h"
#include "designdata/symbol_orin_quill_data_visitor.h"
#include "ids/detail/id_counter.h"

namespace Quill::Utils::detail {

// The counters that a scan feeds, each borrowed or null.
struct CounterSlots {
    IdCounter<ObjectId>* object = nullptr;
    IdCounter<SegmentId>* segment = nullptr;
    IdCounter<JointId>* joint = nullptr;
    IdCounter<AttributeId>* attribute = nullptr;

    // Reserved ids are passed over like missing ones, so the answers are of no use here.
    template <class Record>
    void Offer(const Record& data) noexcept {
        if (object != nullptr) object->Cover(ObjectId(data.objectId));
        if constexpr (requires { data.attributeId; }) {
            if (attribute != nullptr) attribute->Cover(AttributeId(data.attributeId));
        }
        if constexpr (requires { data.segments; }) {
            if (joint != nullptr)
                for (const Orin::ListSegmentsQuillJoint& item : data.segments.joints)
                    joint->Cover(JointId(item.id));
            if (segment != nullptr)
                for (const Orin::ListSegmentsQuillSegment& item : data.segments.segments)
                    segment->Cover(SegmentId(item.id));
        }
    }
};

class MaxFinder_Sch final : public BlockOrinQuillDataVisitor {
public:
    explicit MaxFinder_Sch(const CounterSlots& slots) noexcept : m_slots(slots) {}

    void visit(const Orin::GroupDataQuill& data) override { m_slots.Offer(data); }
    void visit(const Orin::LabelDataQuill& data) override { m_slots.Offer(data); }
    void visit(const Orin::AttrDataQuill& data) override { m_slots.Offer(data); }
    void visit(const Orin::TextDataQuill& data) override { m_slots.Offer(data); }
    void visit(const Orin::CircleDataQuill& data) override { m_slots.Offer(data); }
    void visit(const Orin::ArcDataQuill& data) override { m_slots.Offer(data); }
    void visit(const Orin::RectDataQuill& data) override { m_slots.Offer(data); }
    void visit(const Orin::LineDataQuill& data) override { m_slots.Offer(data); }
    void visit(const Orin::BusDataQuill& data) override { m_slots.Offer(data); }
    void visit(const Orin::NetDataQuill& data) override { m_slots.Offer(data); }
    void visit(const Orin::CompDataQuill& data) override { m_slots.Offer(data); }

private:
    CounterSlots m_slots;
};

class MaxFinder_Sym final : public SymbolOrinQuillDataVisitor {
public:
    explicit MaxFinder_Sym(const CounterSlots& slots) noexcept : m_slots(slots) {}

    void visit(const Orin::LabelDataQuill& data) override { m_slots.Offer(data); }
    void visit(const Orin::AttrDataQuill& data) override { m_slots.Offer(data); }
    void visit(const Orin::TextDataQuill& data) override { m_slots.Offer(data); }
    void visit(const Orin::CircleDataQuill& data) override { m_slots.Offer(data); }
    void visit(const Orin::ArcDataQuill& data) override { m_slots.Offer(data); }
    void visit(const Orin::RectDataQuill& data) override { m_slots.Offer(data); }
    void visit(const Orin::LineDataQuill& data) override { m_slots.Offer(data); }
    void visit(const Orin::PinDataQuill& data) override { m_slots.Offer(data); }

private:
    CounterSlots m_slots;
};

}  // namespace Quill::Utils::detail
