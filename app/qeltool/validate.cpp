#include "validate.h"

#include "references.h"

#include "objectfile/catalogue.h"

#include <qel/qel_types.h>

#include <fmt/format.h>

#include <map>
#include <memory>
#include <optional>
#include <string_view>

namespace qeltool {

namespace {

struct Unref {
    void operator()(QelObject* o) const {
        if (o) o->UnRef();
    }
};

class Validator {
public:
    explicit Validator(QelReader& reader) : m_reader(reader) {}

    std::vector<Finding> run() {
        const unsigned count = m_reader.GetObjectCount();
        m_classes.assign(count, std::nullopt);
        for (unsigned id = 0; id < count; ++id)
            readOne(id);
        for (unsigned id = 0; id < count; ++id)
            checkReferences(id);
        checkStructure();
        return std::move(m_findings);
    }

private:
    void note(int object, std::string text) { m_findings.push_back({object, std::move(text)}); }

    void readOne(unsigned id) {
        try {
            std::unique_ptr<QelObject, Unref> o(m_reader.ReadObject(id));
            if (!o) return note(int(id), "cannot be read");
            m_classes[id] = o->GetName();
            checkParams(int(id), *o, o->GetName());
        } catch (const QelException& e) {
            note(int(id), e.GetReason());
        }
    }

    // Against the catalogue: every required param there, every known param of its type and
    // element count; nested objects of known classes in turn. `where` names the object as the
    // finding should ("Cylinder", "Cylinder \"pose\" Transformation").
    void checkParams(int id, QelObject& o, const std::string& where) {
        const QelClassSpec* cls = QelFindClass(o.GetName());
        if (!cls) return;
        for (const QelParamDef& def : cls->params)
            if (def.status == QelParamStatus::Required && !o.GetParam(def.name, 0))
                note(id, fmt::format("{} lacks the required \"{}\"", where, def.name));
        for (unsigned i = 0; i < o.GetParamCount(); ++i) {
            QelParam* p = o.GetParam(i);
            const QelParamDef* def = p ? QelFindParam(*cls, p->GetName()) : nullptr;
            if (!def) continue;
            if (p->GetType() != def->type) {
                note(id, fmt::format("{} \"{}\" should be a {}, not a {}", where, def->name,
                                     QelTypeName(def->type), QelTypeName(p->GetType())));
                continue;
            }
            if (QelArrayElementSize(def->type) && !QelCountFits(*def, p->GetArraySize()))
                note(id, fmt::format("{} \"{}\" holds {} values, not {}", where, def->name,
                                     p->GetArraySize(), def->count));
            if (def->type == QelObjectType) {
                QelObject* child = nullptr;
                p->GetValue(child);
                if (child)
                    checkParams(id, *child,
                                fmt::format("{} \"{}\" {}", where, def->name, child->GetName()));
            }
        }
    }

    // The numbers held by a uint or uint[] param; nullopt when the param has another type.
    static std::optional<std::vector<unsigned>> numbers(QelParam& p) {
        if (p.GetType() == QelUIntType) {
            unsigned v;
            p.GetValue(v);
            return std::vector<unsigned>{v};
        }
        if (p.GetType() == QelUIntArrayType) {
            unsigned* v = nullptr;
            unsigned n = 0;
            p.GetValue(v, n, false);
            return std::vector<unsigned>(v, v + n);
        }
        return std::nullopt;
    }

    void checkReferences(unsigned id) {
        if (!m_classes[id]) return;
        std::unique_ptr<QelObject, Unref> o(m_reader.ReadObject(id));
        for (const ReferenceRule& rule : kReferences) {
            if (*m_classes[id] != rule.owner) continue;
            QelParam* p = o->GetParam(rule.param, 0);
            if (!p) continue;
            auto refs = numbers(*p);
            if (!refs) {
                note(int(id),
                     fmt::format("{} \"{}\" should hold reference numbers (uint or uint[]), "
                                 "not a {}",
                                 rule.owner, rule.param, QelTypeName(p->GetType())));
                continue;
            }
            for (std::size_t i = 0; i < refs->size(); ++i)
                checkTarget(id, rule, (*refs)[i], i, refs->size());
        }
    }

    void checkTarget(unsigned id, const ReferenceRule& rule, unsigned target, std::size_t i,
                     std::size_t n) {
        const std::string at = n == 1 && std::string_view(rule.param) != "objectList"
                                   ? fmt::format("{} \"{}\"", rule.owner, rule.param)
                                   : fmt::format("{} \"{}\"[{}]", rule.owner, rule.param, i);
        if (target >= m_classes.size())
            return note(int(id), fmt::format("{} = {} is out of range (the file has {} objects)",
                                             at, target, m_classes.size()));
        if (target == id) return note(int(id), fmt::format("{} refers to the object itself", at));
        if (!m_classes[target])
            return note(int(id),
                        fmt::format("{} = {} refers to an object that cannot be read", at, target));
        if (*rule.target && *m_classes[target] != rule.target)
            note(int(id), fmt::format("{} = {} is a {}, not a {}", at, target, *m_classes[target],
                                      rule.target));
    }

    void checkStructure() {
        std::unique_ptr<QelObject, Unref> header;
        try {
            header.reset(m_reader.ReadObject("Header", 0));
        } catch (const QelException&) {
            return; // already reported by readOne
        }
        if (!header) return note(-1, "the file has no Header object");
        // What the Header, the ModelSpace and the LayerMgr hold is checked with every object:
        // their references above, their missing or mistyped params against the catalogue.
    }

    QelReader& m_reader;
    std::vector<std::optional<std::string>> m_classes;
    std::vector<Finding> m_findings;
};

} // namespace

std::vector<Finding> validate(QelReader& reader) {
    return Validator(reader).run();
}

} // namespace qeltool
