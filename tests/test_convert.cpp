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

TEST_F(Convert, CarrierFromAManagerOwnsItsStrings) {
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
}

TEST_F(Convert, CarrierWithoutAManagerLeavesItsArrayAlone) {
  NxString* strings = static_cast<NxString*>(mgr.Create(NxTYPE_NxString, 2));
  strings[0] = "12";
  NxTypeConvertData* data = NxTypeConvertData::Make(NxTYPE_NxString, 2, strings, nullptr);
  ASSERT_NE(data, nullptr);
  delete data;
  EXPECT_EQ(Text(strings[0]), "12");  // still ours
  mgr.Delete(NxTYPE_NxString, strings, 2);
}

TEST_F(Convert, GetStringOnlyForStringCarriers) {
  int32_t value = 5;
  NxTypeConvertData* other = NxTypeConvertData::Make(NxTYPE_NxSeal, 1, &value, nullptr);
  EXPECT_EQ(other->GetString(0), nullptr);
  delete other;
  NxTypeConvertData* empty = NxTypeConvertData::Make(NxTYPE_NxString, 3, nullptr, nullptr);
  EXPECT_EQ(empty->GetString(0), nullptr);
  delete empty;
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

TEST_F(Convert, UnsignedRowsTravelAsTheirSignedText) {
  uint16_t word = 40000;
  NxTypeConvertData* w = mgr.ConvertTo(NxTYPE_NxWord, &word, 1);
  EXPECT_EQ(Text(*w->GetString(0)), "-25536");
  uint16_t* wordBack = static_cast<uint16_t*>(mgr.ConvertFrom(NxTYPE_NxWord, w, 1));
  EXPECT_EQ(*wordBack, 40000);
  mgr.Delete(NxTYPE_NxWord, wordBack, 1);
  delete w;

  uint32_t dword = 4000000000u;
  NxTypeConvertData* d = mgr.ConvertTo(NxTYPE_NxDWord, &dword, 1);
  EXPECT_EQ(Text(*d->GetString(0)), "-294967296");
  uint32_t* dwordBack = static_cast<uint32_t*>(mgr.ConvertFrom(NxTYPE_BlockId, d, 1));
  EXPECT_EQ(*dwordBack, 4000000000u);
  mgr.Delete(NxTYPE_BlockId, dwordBack, 1);
  delete d;

  unsigned char byte = 200;
  NxTypeConvertData* b = mgr.ConvertTo(NxTYPE_NxByte, &byte, 1);
  EXPECT_EQ(Text(*b->GetString(0)), "-56");
  unsigned char* byteBack = static_cast<unsigned char*>(mgr.ConvertFrom(NxTYPE_NxByte, b, 1));
  EXPECT_EQ(*byteBack, 200);
  mgr.Delete(NxTYPE_NxByte, byteBack, 1);
  delete b;
}

TEST_F(Convert, RealsRoundTripThroughText) {
  double d = 0.1;
  float f = 1.5f;
  NxTypeConvertData* dt = mgr.ConvertTo(NxTYPE_double, &d, 1);
  NxTypeConvertData* ft = mgr.ConvertTo(NxTYPE_float, &f, 1);
  EXPECT_EQ(Text(*dt->GetString(0)), "0.1");
  EXPECT_EQ(Text(*ft->GetString(0)), "1.5");
  float* back = static_cast<float*>(mgr.ConvertFrom(NxTYPE_float, ft, 1));
  EXPECT_EQ(*back, 1.5f);
  mgr.Delete(NxTYPE_float, back, 1);
  delete dt;
  delete ft;
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

TEST_F(Convert, NullPrintStringIsProcessWide) {
  EXPECT_EQ(Text(NxTypeMgr::GetNullPrintString()), "{NULL}");
  NxTypeMgr::SetNullPrintString(NxString("<none>"));
  EXPECT_EQ(Text(NxTypeMgr::GetNullPrintString()), "<none>");
  NxTypeMgr::SetNullPrintString(NxString("{NULL}"));
}

}  // namespace
