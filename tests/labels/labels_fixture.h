// What the label tests share: lists written as one text, and a project whose answers a test lays down.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "labels/bus_label_expander.h"
#include "platform/interface_manager.h"
#include "platform/project_data.h"

// "A B C", with single blanks, as a list.
template <class Container = std::vector<std::string>>
Container Words(std::string_view text) {
    Container words;
    for (std::size_t begin = 0, end = 0; begin < text.size(); begin = end + 1) {
        end = std::min(text.find(' ', begin), text.size());
        words.emplace_back(text.substr(begin, end - begin));
    }
    return words;
}

inline std::vector<std::string> Expand(std::string_view label, int limiter) {
    std::vector<std::string> members;
    Quill::BusContents::BusLabelExpander expander(label, limiter);
    while (const auto member = expander.Next())
        members.emplace_back(*member);
    return members;
}

// Stands for the project-data service while it lives.
class FakeProject : public Quill::InterfaceFactory {
public:
    explicit FakeProject(std::string limiter = "", std::map<std::string, std::string> contents = {})
        : limiterText(std::move(limiter)), busContents(std::move(contents)) {
        Quill::InterfaceManager::instance().registerInterface(Quill::IProjectData::InterfaceName, this);
    }
    ~FakeProject() override {
        Quill::InterfaceManager::instance().unRegisterInterface(Quill::IProjectData::InterfaceName, this);
    }

    Quill::Interface* internalCreate() override {
        if (!available) return nullptr;
        ++created;
        return new Data(*this);
    }
    void internalRelease(Quill::Interface* object) override {
        if (object != nullptr) ++released;
        delete object;
    }

    std::string limiterText;
    std::map<std::string, std::string> busContents;
    std::function<void()> onLimiterAsked = [] {};
    bool available = true;
    bool open = true;
    int created = 0;
    int released = 0;

private:
    class Data : public Quill::IProjectData, public Quill::IProjectSettings {
    public:
        explicit Data(FakeProject& project) : m_project(project) {}
        const Quill::IProjectSettings* getSettings() const override { return m_project.open ? this : nullptr; }
        std::string getNetLimiter() const override { return m_project.onLimiterAsked(), m_project.limiterText; }
        const std::map<std::string, std::string>& getBusContents() const override { return m_project.busContents; }

    private:
        FakeProject& m_project;
    };
};
