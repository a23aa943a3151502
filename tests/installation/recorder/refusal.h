#pragma once

#include "installation/recorder/recordererror.h"

#include <gtest/gtest.h>

/// The kind with which @p action is refused, and a failure of the test when it is not, or without a word.
template <typename Action> TQ_KORVE::eKorveKind kindOf(Action action)
{
    try {
        action();
    } catch (const installation::recorder::RecorderError &error) {
        EXPECT_FALSE(error.text().isEmpty());
        return error.kind();
    }
    ADD_FAILURE() << "it was done";
    return TQ_KORVE::ekIMPLEMENTATION_FAULT;
}
