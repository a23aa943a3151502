#include "tests/support/objectmodel/objectclass.h"

#include "objectmodel/booleanfilter.h"
#include "objectmodel/enumfilter.h"
#include "objectmodel/filtercondition.h"
#include "objectmodel/filterconditionlist.h"
#include "objectmodel/numberfilter.h"
#include "objectmodel/stringfilter.h"

namespace modeltest
{

using namespace KORVE_XML;

std::vector<ObjectClass> filterClasses()
{
    return {describe<FilterConditionList>(
                {KORVE_MEMBER(FilterConditionList, ID), KORVE_MEMBER(FilterConditionList, FilterCondition)}),
            describe<FilterCondition>(
                {KORVE_MEMBER(FilterCondition, Name), KORVE_MEMBER(FilterCondition, Column),
                 KORVE_MEMBER(FilterCondition, Role), KORVE_MEMBER(FilterCondition, Enabled),
                 KORVE_ALTERNATIVE(FilterCondition, StringFilter), KORVE_ALTERNATIVE(FilterCondition, NumberFilter),
                 KORVE_ALTERNATIVE(FilterCondition, EnumFilter), KORVE_ALTERNATIVE(FilterCondition, BooleanFilter)}),
            describe<StringFilter>({KORVE_MEMBER(StringFilter, Pattern), KORVE_MEMBER(StringFilter, CaseSensitive),
                                    KORVE_MEMBER(StringFilter, PatternSyntax)}),
            describe<NumberFilter>({KORVE_MEMBER(NumberFilter, Type), KORVE_MEMBER(NumberFilter, Comparator),
                                    KORVE_MEMBER(NumberFilter, FilterValue)}),
            describe<EnumFilter>({KORVE_MEMBER(EnumFilter, EnumValue)}),
            describe<BooleanFilter>({KORVE_MEMBER(BooleanFilter, TestValue)})};
}

} // namespace modeltest
