#pragma once

#include <functional>

/// A processor of either delayed log: counts its calls, and calls back if told what.
template <typename Interface>
class Processor : public Interface
{
public:
    void process() override // under the log's lock
    {
        ++calls;
        if (callBack)
            callBack();
    }

    int calls = 0;
    std::function<void()> callBack;
};
