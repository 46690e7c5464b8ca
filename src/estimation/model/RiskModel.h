#pragma once

// Everything of the risk model in one include, for those who use the whole of it.
#include "estimation/model/RiskBands.h"
#include "estimation/model/RiskGraphRules.h"
#include "estimation/model/RiskLevels.h"
#include "estimation/model/RiskMatrix.h"
#include "estimation/model/Statements.h"
