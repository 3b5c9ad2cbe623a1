#pragma once

/// How much a reader hands over.
enum class Scope {
    Usual,     // what the rules leave out stays out, and is counted in the report
    Everything // that too
};
