// An entity that tells what the world does with it.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "world/IEntity.h"

class ProbeEntity : public IEntity {
public:
    using Log = std::vector<std::string>;

    explicit ProbeEntity(std::string probeName = "", Log* sharedLog = nullptr)
        : name(std::move(probeName)), log(sharedLog) {}

    ~ProbeEntity() override {
        if (onDestroy) {
            onDestroy();
        }
    }

    void Update() override {
        ++updates;
        Write("update ");
        if (onUpdate) {
            onUpdate();
        }
    }

    void Render() override {
        ++renders;
        Write("render ");
    }

    int updates = 0;
    int renders = 0;
    std::function<void()> onUpdate;
    std::function<void()> onDestroy;

private:
    void Write(const char* what) {
        if (log != nullptr) {
            log->push_back(what + name);
        }
    }

    std::string name;
    Log* log; // not owned
};
