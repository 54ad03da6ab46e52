#include "support/Object.h"

#include "platform/Text.h"

namespace scenedetect {
namespace {

// Registrations are static objects of other files: this has to be there before any of them.
constinit const RuntimeClassRegistration* g_registrations = nullptr;

} // namespace

const RuntimeClass Object::kRuntimeClass = {"Object", sizeof(Object), 0xFFFF, nullptr, nullptr};

bool RuntimeClass::IsDerivedFrom(const RuntimeClass& other) const {
    const RuntimeClass* ancestor = this;
    while (ancestor != nullptr && ancestor != &other)
        ancestor = ancestor->base;
    return ancestor != nullptr;
}

RuntimeClassRegistration::RuntimeClassRegistration(const RuntimeClass& runtimeClass)
    : m_class(runtimeClass), m_next(g_registrations) {
    g_registrations = this;
}

const RuntimeClass* RuntimeClass::Find(std::string_view name) {
    for (const auto* entry = g_registrations; entry != nullptr; entry = entry->m_next)
        if (entry->m_class.name == name)
            return &entry->m_class;
    return nullptr;
}

void Object::Dump(std::wstring& text) const {
    text += L"a " + WideFromUtf8(GetRuntimeClass().name) + L"\n";
}

} // namespace scenedetect
