// One import is one transaction.
#include "interchange/detail/design_model.h"

namespace Quill::Interchange {

namespace {

// The design enters inside a transaction, which is rolled back unless it is committed.
class Import {
public:
    explicit Import(const Orin::ContainerT<const Orin::ISnapshot>& snapshot) : m_snapshot(snapshot) {
        Check(m_snapshot->BeginTransaction(Orin::ETransactionType::Import));
        m_open = true;
    }
    ~Import() {
        if (m_open) static_cast<void>(m_snapshot->RollbackTransaction());
    }
    Import(const Import&) = delete;
    Import& operator=(const Import&) = delete;

    void Commit() {
        Check(m_snapshot->CommitTransaction());
        m_open = false;
    }

    static void Check(const Orin::Result& result) {
        if (!result) Fail({}, static_cast<const char*>(result.GetDescription()));
    }

private:
    const Orin::ContainerT<const Orin::ISnapshot> m_snapshot;
    bool m_open = false;
};

void ExpectEmpty(const Orin::ISnapshot& snapshot) {
    Orin::IteratorT<const Orin::IBlock> blocks;
    Orin::IteratorT<const Orin::IConfig> configs;
    Orin::ListAttribute attributes;
    Import::Check(snapshot.GetIterBlocks(blocks));
    Import::Check(snapshot.GetIterConfigs(configs));
    Import::Check(snapshot.GetAttributes(attributes));
    if (blocks || configs || !attributes.IsEmpty()) Fail({}, "The snapshot holds a design already");
}

}  // namespace

Orin::String ImportDesign(const Orin::ContainerT<const Orin::ISnapshot>& snapshot,
                          const std::function<DesignModel()>& make,
                          const std::function<void(DesignModel&)>& beforeDrawing) {
    if (!snapshot) Fail({}, "There is no snapshot");
    DesignModel design = make();
    Import import(snapshot);
    ExpectEmpty(*snapshot);
    ApplyDesign(design, snapshot, [&] {
        if (beforeDrawing) beforeDrawing(design);
    });
    import.Commit();
    return design.name;
}

}  // namespace Quill::Interchange
