#pragma once

#include "support/EnvironmentSettings.h"
#include "support/MResources.h"

#include <gtest/gtest.h>

// For tests that change the language: English again afterwards, in the
// setting and in the table.
class EnglishAfterTest : public testing::Test
{
protected:
    void TearDown() override
    {
        EnvironmentSettings::SetLang(1033);
        MResources::InitLangSupport();
    }
};
