// The conversion carrier, null and default values.
#include <cmath>
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include <nxtm/nxtm.h>

namespace {

std::string Text(const NxString& s) {
  return std::string(s.StrGet());
}

// The old conversions are protected: their callers are subclasses.
class OldConversions : public NxTypeMgr {
 public:
  using NxTypeMgr::ConvertFromNxStringOld;
  using NxTypeMgr::ConvertToNxStringOld;
};

class Convert : public ::testing::Test {
 protected:
  NxTypeMgr mgr;
};

TEST_F(Convert, CarrierOwnsItsStringsOnlyWhenAManagerMadeThem) {
  int32_t values[2] = {-7, 40};
  NxTypeConvertData* data = mgr.ConvertTo(NxTYPE_long, values, 2);
  ASSERT_NE(data, nullptr);
  EXPECT_EQ(data->typeMgr, &mgr);
  EXPECT_EQ(data->type, NxTYPE_NxString);
  EXPECT_EQ(data->count, 2u);
  EXPECT_EQ(Text(*data->GetString(0)), "-7");
  EXPECT_EQ(Text(*data->GetString(1)), "40");
  EXPECT_EQ(data->GetString(2), nullptr);
  EXPECT_EQ(data->GetString(-1), nullptr);
  delete data;  // frees the strings through the manager; the sanitizers watch

  NxString* strings = static_cast<NxString*>(mgr.Create(NxTYPE_NxString, 2));
  strings[0] = "12";
  delete NxTypeConvertData::Make(NxTYPE_NxString, 2, strings, nullptr);
  EXPECT_EQ(Text(strings[0]), "12");  // still ours
  mgr.Delete(NxTYPE_NxString, strings, 2);
  // Only a string carrier with strings hands any out.
  int32_t value = 5;
  for (NxTypeConvertData* other : {NxTypeConvertData::Make(NxTYPE_NxSeal, 1, &value, nullptr),
                                   NxTypeConvertData::Make(NxTYPE_NxString, 3, nullptr, nullptr)}) {
    EXPECT_EQ(other->GetString(0), nullptr);
    delete other;
  }
}

TEST_F(Convert, ConvertFromFillsMissingStringsWithZero) {
  NxString* strings = static_cast<NxString*>(mgr.Create(NxTYPE_NxString, 2));
  strings[0] = "11";
  strings[1] = "0x10";  // base 0 reads hexadecimal
  NxTypeConvertData* data = NxTypeConvertData::Make(NxTYPE_NxString, 2, strings, nullptr);
  int32_t* values = static_cast<int32_t*>(mgr.ConvertFrom(NxTYPE_long, data, 3));
  ASSERT_NE(values, nullptr);
  EXPECT_EQ(data->typeMgr, &mgr);  // entered before the call
  EXPECT_EQ(values[0], 11);
  EXPECT_EQ(values[1], 16);
  EXPECT_EQ(values[2], 0);
  mgr.Delete(NxTYPE_long, values, 3);
  delete data;  // the manager frees the strings now
}

// One value to text through the carrier and back through row `backId`:
// "text -> value".
template <typename T>
std::string Carry(NxTypeMgr& mgr, char id, T value, char backId) {
  NxTypeConvertData* carrier = mgr.ConvertTo(id, &value, 1);
  const std::string text = Text(*carrier->GetString(0));
  T* back = static_cast<T*>(mgr.ConvertFrom(backId, carrier, 1));
  const std::string shown = text + " -> " + std::to_string(*back);
  mgr.Delete(backId, back, 1);
  delete carrier;
  return shown;
}

TEST_F(Convert, UnsignedRowsTravelAsTheirSignedTextAndRealsRoundTrip) {
  EXPECT_EQ(Carry<uint16_t>(mgr, NxTYPE_NxWord, 40000, NxTYPE_NxWord), "-25536 -> 40000");
  EXPECT_EQ(Carry<uint32_t>(mgr, NxTYPE_NxDWord, 4000000000u, NxTYPE_BlockId),
            "-294967296 -> 4000000000");
  EXPECT_EQ(Carry<unsigned char>(mgr, NxTYPE_NxByte, 200, NxTYPE_NxByte), "-56 -> 200");
  EXPECT_EQ(Carry<float>(mgr, NxTYPE_float, 1.5f, NxTYPE_float), "1.5 -> 1.500000");
  EXPECT_EQ(Carry<double>(mgr, NxTYPE_double, 0.1, NxTYPE_double), "0.1 -> 0.100000");
}

TEST_F(Convert, StringsKeepNullAndTheirCodeSet) {
  NxString* source = static_cast<NxString*>(mgr.Create(NxTYPE_NxString, 2));
  source[0] = "abc";
  source[1].SetNullValue();
  NxTypeConvertData* data = mgr.ConvertTo(NxTYPE_NxString, source, 2);
  EXPECT_EQ(Text(*data->GetString(0)), "abc");
  EXPECT_TRUE(data->GetString(1)->IsNullValue());
  NxString* back = static_cast<NxString*>(mgr.ConvertFrom(NxTYPE_NxString, data, 3));
  EXPECT_EQ(Text(back[0]), "abc");
  EXPECT_TRUE(back[1].IsNullValue());
  EXPECT_TRUE(back[2].IsNullValue());  // missing
  mgr.Delete(NxTYPE_NxString, back, 3);
  mgr.Delete(NxTYPE_NxString, source, 2);
  delete data;
}

TEST_F(Convert, OldFormPicksAFreeSeparator) {
  OldConversions old;
  int32_t values[2] = {1, 2};
  NxString* text = old.ConvertToNxStringOld(values, NxTYPE_long, 2);
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(std::string(text->StrGet(), text->Len()), std::string("1\x01"
                                                                  "2\x01",
                                                                  4));
  old.Delete(NxTYPE_NxString, text, 1);

  // Strings that hold code 1 but not code 2 get code 2.
  NxString* strings = static_cast<NxString*>(old.Create(NxTYPE_NxString, 2));
  strings[0] = "a\x01";
  strings[1] = "b";
  NxString* joined = old.ConvertToNxStringOld(strings, NxTYPE_NxString, 2);
  EXPECT_EQ(std::string(joined->StrGet(), joined->Len()), std::string("a\x01\x02"
                                                                      "b\x02",
                                                                      5));
  old.Delete(NxTYPE_NxString, joined, 1);
  old.Delete(NxTYPE_NxString, strings, 2);

  NxString* none = old.ConvertToNxStringOld(values, NxTYPE_long, 0);
  EXPECT_EQ(none->Len(), 0);
  old.Delete(NxTYPE_NxString, none, 1);
}

TEST_F(Convert, OldFormComesBackAndConsumesItsText) {
  OldConversions old;
  NxString text("10,20,");
  int32_t* values = static_cast<int32_t*>(old.ConvertFromNxStringOld(&text, NxTYPE_long, 2));
  ASSERT_NE(values, nullptr);
  EXPECT_EQ(values[0], 10);
  EXPECT_EQ(values[1], 20);
  EXPECT_EQ(text.Len(), 0);
  old.Delete(NxTYPE_long, values, 2);

  // The separator is whatever character ends the text: here "8", so the
  // parts are "7;" and an empty one, and the third element is missing.
  NxString partial("7;8");
  int32_t* three = static_cast<int32_t*>(old.ConvertFromNxStringOld(&partial, NxTYPE_long, 3));
  EXPECT_EQ(three[0], 7);
  EXPECT_EQ(three[1], 0);
  EXPECT_EQ(three[2], 0);
  EXPECT_EQ(partial.Len(), 0);
  old.Delete(NxTYPE_long, three, 3);

  NxString empty("");
  int32_t* one = static_cast<int32_t*>(old.ConvertFromNxStringOld(&empty, NxTYPE_long, 1));
  EXPECT_EQ(one[0], 0);
  old.Delete(NxTYPE_long, one, 1);
}

TEST_F(Convert, SetNullValueFallsBackOnTheDefault) {
  int32_t l = 99;
  EXPECT_EQ(mgr.SetNullValue(NxTYPE_long, &l), 0);
  EXPECT_EQ(l, 0);
  EXPECT_EQ(mgr.IsNullValue(NxTYPE_long, &l), 0);
  double d = 2.5;
  EXPECT_EQ(mgr.SetNullValue(NxTYPE_double, &d), 0);
  EXPECT_EQ(d, 0.0);

  NxString s("x");
  EXPECT_EQ(mgr.SetNullValue(NxTYPE_NxString, &s), 0);
  EXPECT_NE(mgr.IsNullValue(NxTYPE_NxString, &s), 0);

  EXPECT_EQ(mgr.SupportsNullValue(NxTYPE_long), 0);
  EXPECT_EQ(mgr.SupportsNullValue(NxTYPE_illegal), 0);
  EXPECT_EQ(mgr.SupportsNullValue(NxTYPE_NxString), 1);
  NxTypeMgr old(0);
  EXPECT_EQ(old.SupportsNullValue(NxTYPE_NxString), 0);  // the old string row has no null
  EXPECT_EQ(old.IsNullValue(NxTYPE_NxString, &s), 0);
}

TEST_F(Convert, DiskIsNullValueNeverAnswers) {
  for (int id : {0, 11, 27, 39, 40, 100}) {
    EXPECT_EQ(mgr.DiskIsNullValue(static_cast<char>(id), nullptr), -2999) << id;
  }
}

TEST_F(Convert, DefaultValuesByKindOfRow) {
  int32_t* longs = static_cast<int32_t*>(mgr.DefaultValue(NxTYPE_long, 3, 1));
  ASSERT_NE(longs, nullptr);
  EXPECT_EQ(longs[0] | longs[1] | longs[2], 0);
  mgr.Delete(NxTYPE_long, longs, 3);

  double* reals = static_cast<double*>(mgr.DefaultValue(NxTYPE_double, 2, 0));
  EXPECT_EQ(reals[0], 0.0);
  EXPECT_EQ(reals[1], 0.0);
  mgr.Delete(NxTYPE_double, reals, 2);

  NxString* nulls = static_cast<NxString*>(mgr.DefaultValue(NxTYPE_NxString, 2, 1));
  EXPECT_TRUE(nulls[0].IsNullValue());
  EXPECT_TRUE(nulls[1].IsNullValue());
  mgr.Delete(NxTYPE_NxString, nulls, 2);

  NxString* empties = static_cast<NxString*>(mgr.DefaultValue(NxTYPE_NxString, 1, 0));
  EXPECT_FALSE(empties->IsNullValue());
  EXPECT_TRUE(empties->IsEmpty());
  mgr.Delete(NxTYPE_NxString, empties, 1);

  EXPECT_EQ(mgr.DefaultValue(NxTYPE_illegal, 1, 0), nullptr);
}

}  // namespace
