#include "config/dir_watch.h"

#include "config/detail/dir_watch_state.h"

namespace Quill {

using ConfigDetail::DirWatchState;

DirWatch::DirWatch() : m_impl(std::make_shared<DirWatchState>()) {}

DirWatch::~DirWatch() {
    m_impl->stopWatching();
}

DirWatch::DirWatch(const DirWatch& other) : m_impl(std::make_shared<DirWatchState>(*other.m_impl)) {}

DirWatch& DirWatch::operator=(const DirWatch& other) {
    if (this != &other) m_impl = std::make_shared<DirWatchState>(*other.m_impl);
    return *this;
}

void DirWatch::setDirToWatch(const std::string& dir, const std::string& file) {
    m_impl->setDirToWatch(dir, file);
}

void DirWatch::setWatchTime(int microseconds, bool reportFirst, int minPeriodMs) {
    m_impl->setWatchTime(microseconds, reportFirst, minPeriodMs);
}

bool DirWatch::changed() {
    const std::shared_ptr<DirWatchState> state = m_impl;
    return state->changed();
}

void DirWatch::stopWatching() {
    m_impl->stopWatching();
}

}  // namespace Quill
