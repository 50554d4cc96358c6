// The pieces an entity's explode hands out: new entities outside the database that the caller
// owns, deleted with the holder.
#pragma once

#include <arx/arx.h>

#include <cstddef>

class QelExploded {
public:
    // Explodes the entity; ok() tells whether the host did.
    explicit QelExploded(const AcDbEntity& entity) : m_ok(entity.explode(m_pieces) == Acad::eOk) {}
    ~QelExploded() {
        for (int i = 0; i < m_pieces.length(); ++i)
            delete static_cast<AcDbEntity*>(m_pieces[i]);
    }
    QelExploded(const QelExploded&) = delete;
    QelExploded& operator=(const QelExploded&) = delete;

    bool ok() const { return m_ok; }
    int size() const { return m_pieces.length(); }
    AcDbEntity* operator[](int i) const { return static_cast<AcDbEntity*>(m_pieces[i]); }

private:
    AcDbVoidPtrArray m_pieces;
    bool m_ok;
};
